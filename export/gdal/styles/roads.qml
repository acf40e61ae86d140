<!DOCTYPE qgis>
<!-- Roads by class, in their width in metres within limits in millimetres; casings lie below all
     roads, arrows above. An arrow is in the middle of a road that is
     long enough for it, or every 40 mm of one that is longer than that. -->
<qgis version="3.22" styleCategories="Symbology|Labeling|Rendering">
 <renderer-v2 type="RuleRenderer" symbollevels="1" forceraster="0" enableorderby="0">
  <rules key="roads">
   <rule key="classes" label="class">
    <rule key="0" symbol="0" filter="&quot;highway&quot; = 'motorway'" label="motorway"/>
    <rule key="1" symbol="1" filter="&quot;highway&quot; = 'trunk'" label="trunk"/>
    <rule key="2" symbol="2" filter="&quot;highway&quot; = 'primary'" label="primary"/>
    <rule key="3" symbol="3" filter="&quot;highway&quot; = 'secondary'" label="secondary"/>
    <rule key="4" symbol="4" filter="&quot;highway&quot; = 'tertiary'" label="tertiary"/>
    <rule key="5" symbol="5" filter="&quot;highway&quot; = 'motorway_link'" label="motorway_link"/>
    <rule key="6" symbol="6" filter="&quot;highway&quot; = 'trunk_link'" label="trunk_link"/>
    <rule key="7" symbol="7" filter="&quot;highway&quot; = 'primary_link'" label="primary_link"/>
    <rule key="8" symbol="8" filter="&quot;highway&quot; = 'secondary_link'" label="secondary_link"/>
    <rule key="9" symbol="9" filter="&quot;highway&quot; = 'tertiary_link'" label="tertiary_link"/>
    <rule key="10" symbol="10" filter="ELSE" label="residential and the like"/>
    <rule key="11" symbol="11" filter="&quot;highway&quot; = 'service'" label="service"/>
   </rule>
   <rule key="oneways" filter="&quot;direction&quot; in (1, 2)" label="one-way" scalemaxdenom="12000" scalemindenom="1">
    <rule key="short" symbol="12" filter="&quot;length&quot; &gt; 0.003 * @map_scale and &quot;length&quot; &lt;= 0.04 * @map_scale" label="short"/>
    <rule key="long" symbol="13" filter="&quot;length&quot; &gt; 0.04 * @map_scale" label="long"/>
   </rule>
  </rules>
  <symbols>
   <symbol type="line" name="0" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="11">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="169,69,43,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="18.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,1.15,1,3.3"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="23">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="233,128,95,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="16"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.75,1,2.8"/>
    </layer>
   </symbol>
   <symbol type="line" name="1" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="10">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="184,112,47,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="16.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,1.05,1,3.1"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="22">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="242,163,97,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="14"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.65,1,2.6"/>
    </layer>
   </symbol>
   <symbol type="line" name="2" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="9">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="189,143,54,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="14.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.9,1,2.9"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="21">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="248,201,116,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="12"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.55,1,2.4"/>
    </layer>
   </symbol>
   <symbol type="line" name="3" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="8">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="184,160,78,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="12.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.7,1,2.7"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="20">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="252,230,153,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="10"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.4,1,2.2"/>
    </layer>
   </symbol>
   <symbol type="line" name="4" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="7">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="157,152,131,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="11.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.5,1,2.5"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="19">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="255,251,224,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="9"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.25,1,2"/>
    </layer>
   </symbol>
   <symbol type="line" name="5" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="6">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="169,69,43,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="12.1"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.8,1,2.32"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="18">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="233,128,95,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="9.6"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.45,1,1.82"/>
    </layer>
   </symbol>
   <symbol type="line" name="6" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="5">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="184,112,47,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="10.9"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.73,1,2.19"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="17">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="242,163,97,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="8.4"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.39,1,1.69"/>
    </layer>
   </symbol>
   <symbol type="line" name="7" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="4">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="189,143,54,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="9.7"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.63,1,2.06"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="16">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="248,201,116,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="7.2"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.33,1,1.56"/>
    </layer>
   </symbol>
   <symbol type="line" name="8" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="3">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="184,160,78,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="8.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.49,1,1.93"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="15">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="252,230,153,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="6"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.24,1,1.43"/>
    </layer>
   </symbol>
   <symbol type="line" name="9" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="2">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="157,152,131,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="7.9"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.35,1,1.8"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="14">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="255,251,224,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="5.4"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.15,1,1.3"/>
    </layer>
   </symbol>
   <symbol type="line" name="10" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="1">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="144,144,151,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="10.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.3,1,2.2"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="13">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="255,255,255,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="6.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.08,1,1.7"/>
    </layer>
   </symbol>
   <symbol type="line" name="11" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="SimpleLine" enabled="1" locked="0" pass="0">
     <prop k="capstyle" v="flat"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="168,168,176,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="7.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.2,1,1.6"/>
    </layer>
    <layer class="SimpleLine" enabled="1" locked="0" pass="12">
     <prop k="capstyle" v="round"/>
     <prop k="joinstyle" v="round"/>
     <prop k="line_color" v="255,255,255,255"/>
     <prop k="line_style" v="solid"/>
     <prop k="line_width" v="3.5"/>
     <prop k="line_width_unit" v="RenderMetersInMapUnits"/>
     <prop k="width_map_unit_scale" v="3x:0,0,1,0.05,1,1.1"/>
    </layer>
   </symbol>
   <symbol type="line" name="12" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="MarkerLine" enabled="1" locked="0" pass="24">
     <prop k="placement" v="centralpoint"/>
     <prop k="rotate" v="1"/>
     <symbol type="marker" name="@12@0" alpha="1" clip_to_extent="1" force_rhr="0">
      <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
       <prop k="angle" v="0"/>
       <prop k="color" v="70,70,80,255"/>
       <prop k="name" v="filled_arrowhead"/>
       <prop k="outline_style" v="no"/>
       <prop k="size" v="1.9"/>
       <prop k="size_unit" v="MM"/>
       <data_defined_properties>
        <Option type="Map">
         <Option name="name" type="QString" value=""/>
         <Option name="properties" type="Map">
          <Option name="angle" type="Map">
           <Option name="active" type="bool" value="true"/>
           <Option name="expression" type="QString" value="if(&quot;direction&quot; = 2, 180, 0)"/>
           <Option name="type" type="int" value="3"/>
          </Option>
         </Option>
         <Option name="type" type="QString" value="collection"/>
        </Option>
       </data_defined_properties>
      </layer>
     </symbol>
    </layer>
   </symbol>
   <symbol type="line" name="13" alpha="1" clip_to_extent="1" force_rhr="0">
    <layer class="MarkerLine" enabled="1" locked="0" pass="24">
     <prop k="interval" v="40"/>
     <prop k="interval_unit" v="MM"/>
     <prop k="offset_along_line" v="20"/>
     <prop k="offset_along_line_unit" v="MM"/>
     <prop k="placement" v="interval"/>
     <prop k="rotate" v="1"/>
     <symbol type="marker" name="@13@0" alpha="1" clip_to_extent="1" force_rhr="0">
      <layer class="SimpleMarker" enabled="1" locked="0" pass="0">
       <prop k="angle" v="0"/>
       <prop k="color" v="70,70,80,255"/>
       <prop k="name" v="filled_arrowhead"/>
       <prop k="outline_style" v="no"/>
       <prop k="size" v="1.9"/>
       <prop k="size_unit" v="MM"/>
       <data_defined_properties>
        <Option type="Map">
         <Option name="name" type="QString" value=""/>
         <Option name="properties" type="Map">
          <Option name="angle" type="Map">
           <Option name="active" type="bool" value="true"/>
           <Option name="expression" type="QString" value="if(&quot;direction&quot; = 2, 180, 0)"/>
           <Option name="type" type="int" value="3"/>
          </Option>
         </Option>
         <Option name="type" type="QString" value="collection"/>
        </Option>
       </data_defined_properties>
      </layer>
     </symbol>
    </layer>
   </symbol>
  </symbols>
 </renderer-v2>
 <labeling type="rule-based">
  <rules key="labels">
   <rule key="names" filter="&quot;name&quot; is not null" scalemaxdenom="12000" scalemindenom="1">
    <settings calloutType="simple">
     <text-style fieldName="name" isExpression="0" fontSize="7" fontSizeUnit="Point" textColor="50,50,60,255">
      <text-buffer bufferDraw="1" bufferSize="0.7" bufferSizeUnits="MM" bufferColor="255,255,255,230"/>
     </text-style>
     <placement placement="3" placementFlags="9" repeatDistance="80" repeatDistanceUnits="MM" maxCurvedCharAngleIn="25" maxCurvedCharAngleOut="-25"/>
     <rendering obstacle="0" mergeLines="1" drawLabels="1"/>
    </settings>
   </rule>
  </rules>
 </labeling>
</qgis>
