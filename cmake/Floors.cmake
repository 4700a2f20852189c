# zv_collect_sources(<variable> <folder>...)
#
# Puts every .cpp file below the folders into the variable. A file that comes or goes is noticed by the next build.
function(zv_collect_sources variable)
    set(patterns)
    foreach(folder IN LISTS ARGN)
        list(APPEND patterns "${folder}/*.cpp")
    endforeach()
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${patterns})
    list(SORT sources)
    set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# zv_add_floor(<library> FOLDERS <folder>... [EXCEPT <file>...] [LINK <library>...])
#
# Adds one floor of the house: a static library of everything below its folders. LINK names the floors and packages it stands
# on. A floor may only name floors below it, so an include that runs upwards shows itself as a missing symbol. A floor that
# has headers alone is an interface library until its first .cpp file comes. Every floor is also linked by the fuzz targets.
function(zv_add_floor library)
    cmake_parse_arguments(PARSE_ARGV 1 floor "" "" "FOLDERS;EXCEPT;LINK")
    zv_collect_sources(sources ${floor_FOLDERS})
    if(floor_EXCEPT)
        list(REMOVE_ITEM sources ${floor_EXCEPT})
    endif()

    if(sources)
        add_library(${library} STATIC ${sources})
        set(scope PUBLIC)
    else()
        add_library(${library} INTERFACE)
        set(scope INTERFACE)
    endif()
    target_include_directories(${library} ${scope} "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${library} ${scope} zv_options ${floor_LINK})
    set_property(GLOBAL APPEND PROPERTY ZV_FLOORS ${library})
endfunction()
