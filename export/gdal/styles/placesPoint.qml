<!DOCTYPE qgis>
<!-- Places to check, by their severity. -->
<qgis version="3.22" styleCategories="Symbology|Rendering">
 <renderer-v2 type="categorizedSymbol" attr="severity" symbollevels="0" forceraster="0" enableorderby="0">
  <categories>
   <category value="high" symbol="0" label="high" render="true"/>
   <category value="medium" symbol="1" label="medium" render="true"/>
   <category value="low" symbol="2" label="low" render="true"/>
  </categories>
  <symbols>
   <symbol type="marker" name="0" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
     <prop k="color" v="200,30,40,255"/>
     <prop k="name" v="circle"/>
     <prop k="outline_color" v="255,255,255,255"/>
     <prop k="outline_width" v="0.4"/>
     <prop k="outline_width_unit" v="MM"/>
     <prop k="size" v="3.6"/>
     <prop k="size_unit" v="MM"/>
    </layer>
   </symbol>
   <symbol type="marker" name="1" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
     <prop k="color" v="240,130,30,255"/>
     <prop k="name" v="circle"/>
     <prop k="outline_color" v="255,255,255,255"/>
     <prop k="outline_width" v="0.4"/>
     <prop k="outline_width_unit" v="MM"/>
     <prop k="size" v="3.0"/>
     <prop k="size_unit" v="MM"/>
    </layer>
   </symbol>
   <symbol type="marker" name="2" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
     <prop k="color" v="245,200,60,255"/>
     <prop k="name" v="circle"/>
     <prop k="outline_color" v="255,255,255,255"/>
     <prop k="outline_width" v="0.4"/>
     <prop k="outline_width_unit" v="MM"/>
     <prop k="size" v="2.4"/>
     <prop k="size_unit" v="MM"/>
    </layer>
   </symbol>
  </symbols>
 </renderer-v2>
</qgis>
