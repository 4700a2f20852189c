# zv_inline_page(<library> FOLDER <folder> SOURCE <file>)
#
# Makes one page of the folder's Page.html, its styles and scripts, and the libraries of the distribution that they need, and builds it
# into the library: SOURCE finds the name of the page in ZV_PAGE_TEMPLATE.
function(zv_inline_page library)
    cmake_parse_arguments(PARSE_ARGV 1 page "" "FOLDER;SOURCE" "")
    zv_find_script(jquery jquery/jquery.min.js libjs-jquery)
    # The compressed form of this one has lost its banner, which is in the plain one.
    zv_find_script(tablesBanner jquery-datatables/jquery.dataTables.js libjs-jquery-datatables)
    zv_find_script(tables jquery-datatables/jquery.dataTables.min.js libjs-jquery-datatables)
    zv_find_script(charts chart.js/chart.min.js libjs-chart.js)
    set(libraries "${jquery}" "${tables}" "${charts}")

    file(GLOB scripts CONFIGURE_DEPENDS "${page_FOLDER}/*.js")
    set(output "${PROJECT_BINARY_DIR}/report/Page.html")
    set(writer "${PROJECT_SOURCE_DIR}/cmake/WriteInlinePage.cmake")
    add_custom_command(OUTPUT "${output}"
        COMMAND "${CMAKE_COMMAND}" "-DFOLDER=${page_FOLDER}" "-DLIBRARIES=${libraries}" "-DBANNER=${tablesBanner}" "-DOUTPUT=${output}"
            -P "${writer}"
        DEPENDS "${writer}" "${page_FOLDER}/Page.html" "${page_FOLDER}/Page.css" ${scripts} ${libraries} "${tablesBanner}"
        COMMENT "Making the page of the report" VERBATIM)
    target_sources(${library} PRIVATE "${output}")
    set_source_files_properties("${page_SOURCE}" PROPERTIES
        COMPILE_DEFINITIONS "ZV_PAGE_TEMPLATE=\"${output}\"" OBJECT_DEPENDS "${output}")
endfunction()

# Puts the path of a script of the distribution into a variable.
function(zv_find_script variable name package)
    find_file(ZV_SCRIPT_${variable} "javascript/${name}" PATH_SUFFIXES share)
    mark_as_advanced(ZV_SCRIPT_${variable})
    if(NOT ZV_SCRIPT_${variable})
        message(FATAL_ERROR "The script ${name} is missing. Install the package ${package}.")
    endif()
    set(${variable} "${ZV_SCRIPT_${variable}}" PARENT_SCOPE)
endfunction()
