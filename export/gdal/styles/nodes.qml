<!DOCTYPE qgis>
<!-- Only where single streets can be told apart. -->
<qgis version="3.22" styleCategories="Symbology|Rendering" hasScaleBasedVisibilityFlag="1" minScale="10000" maxScale="0">
 <renderer-v2 type="singleSymbol" symbollevels="0" forceraster="0" enableorderby="0">
  <symbols>
   <symbol type="marker" name="0" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
     <prop k="color" v="255,255,255,255"/>
     <prop k="name" v="circle"/>
     <prop k="outline_color" v="70,70,80,255"/>
     <prop k="outline_width" v="0.25"/>
     <prop k="outline_width_unit" v="MM"/>
     <prop k="size" v="1.3"/>
     <prop k="size_unit" v="MM"/>
    </layer>
   </symbol>
  </symbols>
 </renderer-v2>
</qgis>
