# The options of all own code, carried by two interface targets:
#   zv_options   how every own file is compiled, and what must then be linked with it
#   zv_program   how a program that is shipped is linked, on top of that

include(CheckCXXCompilerFlag)
include(CheckPIESupported)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

# The static libraries also go into shared libraries, so everything is position independent. A shared library carries its own
# copy of the core, and copies must never find each other: nothing is visible outside that is not exported by name.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
check_pie_supported(LANGUAGES CXX)

add_library(zv_options INTERFACE)
target_compile_options(zv_options INTERFACE -Wall -Wextra -Wshadow -Wconversion)
if(ZV_WARNINGS_AS_ERRORS)
    target_compile_options(zv_options INTERFACE -Werror)
endif()

# A "unique" symbol is one for the whole process, whatever its visibility, and keeps its library from being unloaded: static
# members of templates and of inline functions would be shared between the copies of the core.
check_cxx_compiler_flag(-fno-gnu-unique ZV_HAS_NO_GNU_UNIQUE)
if(ZV_HAS_NO_GNU_UNIQUE)
    target_compile_options(zv_options INTERFACE -fno-gnu-unique)
endif()

set(ZV_SANITIZER_LIST "${ZV_SANITIZERS}")
if(ZV_FUZZING)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "ZV_FUZZING needs clang++ (libFuzzer belongs to clang); this is ${CMAKE_CXX_COMPILER_ID}.")
    endif()
    string(JOIN "," ZV_SANITIZER_LIST fuzzer-no-link ${ZV_SANITIZERS})
endif()

if(ZV_SANITIZER_LIST)
    target_compile_options(zv_options INTERFACE
        -fsanitize=${ZV_SANITIZER_LIST} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(zv_options INTERFACE -fsanitize=${ZV_SANITIZER_LIST})
endif()

# The containers of the standard library check their indexes wherever speed is not what is measured.
target_compile_definitions(zv_options INTERFACE $<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>)

# What is not used is dropped from the release programs: fewer pages to map and fewer addresses to fix at every start.
target_compile_options(zv_options INTERFACE $<$<CONFIG:Release>:-ffunction-sections> $<$<CONFIG:Release>:-fdata-sections>)
target_link_options(zv_options INTERFACE $<$<CONFIG:Release>:-Wl,--gc-sections>)

# The caller starts one process per file, so loading the program is part of the work. The C++ run-time library linked in
# statically makes a start about a third shorter. Sanitized programs keep the shared one: the sanitizers
# have to stand between the program and its allocations and exceptions.
add_library(zv_program INTERFACE)
target_link_libraries(zv_program INTERFACE zv_options)
target_link_options(zv_program INTERFACE -Wl,-O1 -Wl,--as-needed)
if(NOT ZV_SANITIZER_LIST)
    target_link_options(zv_program INTERFACE -static-libstdc++ -static-libgcc -Wl,--exclude-libs,ALL)
endif()
