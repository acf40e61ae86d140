<!DOCTYPE qgis>
<!-- A small sign: red with a bar for what is forbidden, blue for the only way that is allowed. -->
<qgis version="3.22" styleCategories="Symbology|Rendering" hasScaleBasedVisibilityFlag="1" minScale="10000" maxScale="0">
 <renderer-v2 type="RuleRenderer" symbollevels="0" forceraster="0" enableorderby="0">
  <rules key="restrictions">
   <rule key="0" symbol="0" filter="&quot;restriction&quot; like 'only%'" label="only"/>
   <rule key="1" symbol="1" filter="ELSE" label="no"/>
  </rules>
  <symbols>
   <symbol type="marker" name="0" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
     <prop k="color" v="31,95,191,255"/>
     <prop k="name" v="circle"/>
     <prop k="outline_color" v="255,255,255,255"/>
     <prop k="outline_width" v="0.3"/>
     <prop k="outline_width_unit" v="MM"/>
     <prop k="size" v="2.8"/>
     <prop k="size_unit" v="MM"/>
    </layer>
   </symbol>
   <symbol type="marker" name="1" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
     <prop k="color" v="200,30,40,255"/>
     <prop k="name" v="circle"/>
     <prop k="outline_color" v="255,255,255,255"/>
     <prop k="outline_width" v="0.3"/>
     <prop k="outline_width_unit" v="MM"/>
     <prop k="size" v="2.8"/>
     <prop k="size_unit" v="MM"/>
    </layer>
    <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
     <prop k="angle" v="90"/>
     <prop k="name" v="line"/>
     <prop k="outline_color" v="255,255,255,255"/>
     <prop k="outline_width" v="0.5"/>
     <prop k="outline_width_unit" v="MM"/>
     <prop k="size" v="1.5"/>
     <prop k="size_unit" v="MM"/>
    </layer>
   </symbol>
  </symbols>
 </renderer-v2>
</qgis>
