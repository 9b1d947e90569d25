# Where the program's resources lie when Resources/ has been built.
set(ORVEK_RESOURCE_FILE "${CMAKE_BINARY_DIR}/Resources/orvek.rsrc")
# Where the texts in other languages lie, "LANGUAGE.rsrc": beside the program's folder, as where it is installed.
set(ORVEK_LANGUAGES "${CMAKE_BINARY_DIR}/languages")
# Where the headers lie that name their numbers, "Resources/SCRIPT.h" for each script.
set(ORVEK_RESOURCE_HEADERS "${CMAKE_BINARY_DIR}/Headers")
set(ORVEK_RESOURCE_SECTION "${CMAKE_CURRENT_LIST_DIR}/ResourceSection.S")

# orvek_use_text_names(TARGET): its sources, and those of what links it, may include "Resources/SCRIPT.h".
function(orvek_use_text_names target)
    target_include_directories(${target} PUBLIC "${ORVEK_RESOURCE_HEADERS}")
    add_dependencies(${target} text_names)
endfunction()

# orvek_add_resources(TARGET): puts the program's resources into an executable.
function(orvek_add_resources target)
    target_sources(${target} PRIVATE "${ORVEK_RESOURCE_SECTION}")
    set_source_files_properties("${ORVEK_RESOURCE_SECTION}" TARGET_DIRECTORY ${target} PROPERTIES
        COMPILE_DEFINITIONS "ORVEK_RESOURCES=\"${ORVEK_RESOURCE_FILE}\""
        OBJECT_DEPENDS "${ORVEK_RESOURCE_FILE}")
    add_dependencies(${target} orvek_resources)
endfunction()
