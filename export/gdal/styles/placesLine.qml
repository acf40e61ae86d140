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
   <symbol type="line" name="0" alpha="0.7" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="0">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="200,30,40,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="2.0"/>
     <prop k="line_width_unit" v="MM"/>
    </layer>
   </symbol>
   <symbol type="line" name="1" alpha="0.7" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="0">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="240,130,30,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="1.6"/>
     <prop k="line_width_unit" v="MM"/>
    </layer>
   </symbol>
   <symbol type="line" name="2" alpha="0.7" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="0">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="245,200,60,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="1.2"/>
     <prop k="line_width_unit" v="MM"/>
    </layer>
   </symbol>
  </symbols>
 </renderer-v2>
</qgis>
