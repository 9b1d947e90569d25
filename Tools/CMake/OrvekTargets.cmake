# How every target of the project is built: one set of flags, one way to declare a floor, a program
# and a test program.

# Results must not depend on the machine: no contraction of a*b+c, no fast-math. Only errno from the
# mathematics functions is given up, so that sqrt becomes one instruction.
add_library(orvek_flags INTERFACE)
target_compile_features(orvek_flags INTERFACE cxx_std_20)
target_compile_options(orvek_flags INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-ffp-contract=off;-fno-math-errno;-Wall;-Wextra;-Wpedantic;-Wshadow;-Wnon-virtual-dtor;-Woverloaded-virtual;-Wold-style-cast;-Wcast-qual;-Wformat=2>)
# g++ 12 warns of overlapping copies inside its own string operator+ (GCC bug 105651).
target_compile_options(orvek_flags INTERFACE
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>)
if(ORVEK_WERROR)
    target_compile_options(orvek_flags INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Werror>)
endif()
if(ORVEK_SANITIZE)
    target_compile_options(orvek_flags INTERFACE
        -fsanitize=${ORVEK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(orvek_flags INTERFACE -fsanitize=${ORVEK_SANITIZE})
endif()

# orvek_precompile(TARGET HEADERS...): precompiles these of the Tools/CMake/*Headers.h, which most of the target's
# sources read: they make up half of a build's time. Whoever forgets one of them goes unnoticed there, but not in the
# check of headers, which reads none of these.
function(orvek_precompile name)
    foreach(headers IN LISTS ARGN)
        target_precompile_headers(${name} PRIVATE
            "$<$<COMPILE_LANGUAGE:CXX>:${CMAKE_SOURCE_DIR}/Tools/CMake/${headers}Headers.h>")
    endforeach()
    # What comes from a precompiled header no longer counts as the system's own, and g++ 12 finds faults in it.
    target_compile_options(${name} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess
        -Wno-stringop-overflow -Wno-stringop-overread -Wno-array-bounds -Wno-maybe-uninitialized>)
endfunction()

# orvek_batches(TARGET): compiles the target's sources in batches, where the build asks for it: a whole build takes half
# the time. After an edit the preset `dev` is sooner done.
function(orvek_batches name)
    if(NOT ORVEK_BATCHES)
        return()
    endif()
    get_target_property(sources ${name} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
    set(list "${CMAKE_CURRENT_BINARY_DIR}/${name}.sources")
    list(JOIN sources "\n" lines)
    file(CONFIGURE OUTPUT "${list}" CONTENT "${lines}\n")
    execute_process(COMMAND awk -f "${CMAKE_SOURCE_DIR}/Tools/batch-sources.awk" "${list}"
        OUTPUT_VARIABLE batched OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "\n" ";" batched "${batched}")
    foreach(line IN LISTS batched)
        string(REGEX MATCH "^([0-9]+)\t(.*)$" found "${line}")
        set_source_files_properties("${CMAKE_MATCH_2}" PROPERTIES UNITY_GROUP "${name}-${CMAKE_MATCH_1}")
    endforeach()
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # What is a source's own is no longer in the main file.
    target_compile_options(${name} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
endfunction()

# orvek_floor(NAME DIRS dir... LINKS target...): a static library of all sources in DIRS. Includes say the
# path from Source, so every floor's include path is the same; check-layers.sh reads which floor includes which.
function(orvek_floor name)
    cmake_parse_arguments(ARG "" "" "DIRS;LINKS" ${ARGN})
    set(sources "")
    foreach(dir IN LISTS ARG_DIRS)
        file(GLOB found CONFIGURE_DEPENDS "${dir}/*.cpp" "${dir}/*.h")
        list(APPEND sources ${found})
    endforeach()
    add_library(${name} STATIC ${sources})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/Source")
    if(NOT name STREQUAL "platform")  # on which the compiler of resources stands
        orvek_use_text_names(${name})
    endif()
    target_link_libraries(${name} PUBLIC orvek_flags ${ARG_LINKS})
    orvek_precompile(${name} Standard)
    if(NOT name STREQUAL "calculation")  # whose kernels are compiled each in its own way
        orvek_batches(${name})
    endif()
endfunction()

# orvek_test(NAME DIR dir ROOMS folder... LINKS target...): the test program of one floor, all sources in DIR and in
# its ROOMS. Tests name their helpers by the path from the project's folder ("Tests/...").
function(orvek_test name)
    cmake_parse_arguments(ARG "" "DIR" "ROOMS;LINKS" ${ARGN})
    add_executable(${name})
    foreach(folder IN ITEMS "" LISTS ARG_ROOMS)
        file(GLOB found CONFIGURE_DEPENDS "${ARG_DIR}/${folder}/*.cpp" "${ARG_DIR}/${folder}/*.h")
        target_sources(${name} PRIVATE ${found})
    endforeach()
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gtest_main)
    if(ORVEK_SANITIZE)  # what takes long, takes much longer
        target_compile_definitions(${name} PRIVATE ORVEK_SANITIZED)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)  # for one that hangs
    orvek_precompile(${name} Standard Test)
    orvek_batches(${name})
endfunction()
