# Finds the headers of FFmpeg, in the versions whose libraries the worker opens at run time:
#   zv_codec_headers                    an interface target with what compiling against them needs; it links nothing
#   zv_link_codec_component(<folder>)   puts a link to the codec component into a folder of components
#
# ZV_CODEC_INCLUDE_DIR, when set, names the include folder. Otherwise it is the one that packaging/avcodec made or, when it made
# none, that of the system's development packages.
set(ZV_CODEC_INCLUDE_DIR "" CACHE PATH "Include folder of FFmpeg 7.1; empty: that of the codec component or of the system")

# Puts the reason why the headers in the folder cannot be used into the variable, or nothing. The records that the libraries
# share with their callers differ from one major version to the next: headers of another version would compile, and the worker
# would read wrong fields.
function(zv_check_codec_headers variable folder)
    set(${variable} "" PARENT_SCOPE)
    foreach(library_version IN ITEMS avutil.59 swresample.5 avcodec.61 avformat.61 swscale.8 avfilter.10)
        cmake_path(GET library_version STEM library)
        string(TOUPPER "LIB${library}_VERSION_MAJOR" macro)
        file(GLOB headers "${folder}/lib${library}/version*.h")
        set(found "none")
        foreach(header IN LISTS headers)
            file(STRINGS "${header}" line REGEX "^#define +${macro} +[0-9]+" LIMIT_COUNT 1)
            if(line MATCHES "([0-9]+)")
                set(found "${CMAKE_MATCH_1}")
            endif()
        endforeach()
        if(NOT library_version STREQUAL "${library}.${found}")
            set(${variable} "'${folder}' is not FFmpeg 7.1: of lib${library} it has version ${found}. " PARENT_SCOPE)
            return()
        endif()
    endforeach()
endfunction()

# The worker looks for components beside itself when its data folder has none. The link leads nowhere until the component is
# built; then it is found without configuring again.
function(zv_link_codec_component folder)
    if(CodecHeaders_COMPONENT)
        cmake_path(GET CodecHeaders_COMPONENT FILENAME name)
        file(REMOVE "${folder}/${name}")
        file(MAKE_DIRECTORY "${folder}")
        file(CREATE_LINK "${CodecHeaders_COMPONENT}" "${folder}/${name}" SYMBOLIC)
    endif()
endfunction()

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/packaging/avcodec/build"
    "${PROJECT_SOURCE_DIR}/packaging/avcodec/configure-options"
    "${PROJECT_SOURCE_DIR}/packaging/avcodec/NOTICE")
execute_process(COMMAND "${PROJECT_SOURCE_DIR}/packaging/avcodec/build" --folder
    OUTPUT_VARIABLE CodecHeaders_COMPONENT OUTPUT_STRIP_TRAILING_WHITESPACE)

set(CodecHeaders_INCLUDE_DIR "${ZV_CODEC_INCLUDE_DIR}")
if(NOT CodecHeaders_INCLUDE_DIR AND CodecHeaders_COMPONENT)
    cmake_path(REPLACE_FILENAME CodecHeaders_COMPONENT "include" OUTPUT_VARIABLE CodecHeaders_INCLUDE_DIR)
    if(NOT EXISTS "${CodecHeaders_INCLUDE_DIR}")
        set(CodecHeaders_INCLUDE_DIR "")
    endif()
endif()
if(NOT CodecHeaders_INCLUDE_DIR)
    find_package(PkgConfig QUIET)
    if(PKG_CONFIG_FOUND)
        pkg_get_variable(CodecHeaders_INCLUDE_DIR libavcodec includedir)
    endif()
endif()

set(CodecHeaders_PROBLEM "")
if(CodecHeaders_INCLUDE_DIR)
    zv_check_codec_headers(CodecHeaders_PROBLEM "${CodecHeaders_INCLUDE_DIR}")
    if(CodecHeaders_PROBLEM)
        set(CodecHeaders_INCLUDE_DIR "")
    endif()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CodecHeaders REQUIRED_VARS CodecHeaders_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "${CodecHeaders_PROBLEM}The command ./zv component makes them.")

if(CodecHeaders_FOUND AND NOT TARGET zv_codec_headers)
    add_library(zv_codec_headers INTERFACE)
    target_include_directories(zv_codec_headers SYSTEM INTERFACE "${CodecHeaders_INCLUDE_DIR}")
    # The headers refuse C++ code that does not ask for the constant macros of <stdint.h>, unless that header came first.
    target_compile_definitions(zv_codec_headers INTERFACE __STDC_CONSTANT_MACROS)
endif()
