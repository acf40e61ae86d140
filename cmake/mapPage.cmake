# The map page in road_export: what every page has stands in the library as it is. The script is all
# modules of export/html one after the other, in this order.
set(page_modules
    bytes geometry Network components findingKinds search theme mapImages mapStyle camera
    firstPicture vectorTile tiles MapView elements elevationProfile describe panels SearchBox Page main)
list(TRANSFORM page_modules PREPEND ${PROJECT_SOURCE_DIR}/export/html/)
list(TRANSFORM page_modules APPEND .js)

set(page_parts)
set(page_files)
function(add_page_part name)
  list(TRANSFORM ARGN REPLACE "(.+)" ".incbin \"\\1\"\n" OUTPUT_VARIABLE contents)
  list(JOIN contents "" contents)
  string(APPEND page_parts "asm(R\"(.pushsection .rodata
.globl ${name}_begin, ${name}_end
.hidden ${name}_begin, ${name}_end
${name}_begin:
${contents}${name}_end:
.popsection)\");
extern \"C\" [[gnu::visibility(\"hidden\")]] char const ${name}_begin[];
extern \"C\" [[gnu::visibility(\"hidden\")]] char const ${name}_end[];
std::string_view ${name}() { return {${name}_begin, ${name}_end}; }

")
  set(page_parts "${page_parts}" PARENT_SCOPE)
  set(page_files ${page_files} ${ARGN} PARENT_SCOPE)
endfunction()
set(page_folder ${PROJECT_SOURCE_DIR}/export/html)
set(library_folder ${PROJECT_SOURCE_DIR}/third_party/maplibre-gl)
add_page_part(pageTemplate ${page_folder}/page.html)
add_page_part(pageStyle ${page_folder}/page.css)
add_page_part(pageScript ${page_modules})
add_page_part(mapLibraryScript ${library_folder}/maplibre-gl.js)
add_page_part(mapLibraryStyle ${library_folder}/maplibre-gl.css)
add_page_part(mapLibraryLicences ${library_folder}/LICENSE.txt
              ${library_folder}/BUNDLED-LICENSES.txt)
file(GENERATE OUTPUT pageParts.cpp
     CONTENT "#include \"export/html/pageParts.hpp\"\n\n${page_parts}")
set_source_files_properties(${PROJECT_BINARY_DIR}/pageParts.cpp
                            PROPERTIES OBJECT_DEPENDS "${page_files}")
target_sources(road_export PRIVATE ${PROJECT_BINARY_DIR}/pageParts.cpp)
