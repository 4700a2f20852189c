# Writes one page of several files, as cmake -P.
#
#   FOLDER     Page.html, Page.css and the scripts, which follow each other in the order of the list below
#   LIBRARIES  scripts of others, which stand before them
#   BANNER     the plain form of the library that has no banner
#   OUTPUT     the page
#
# In Page.html @STYLE@ and @SCRIPTS@ are the places of the elements, and @POLICY@ is that of the hashes by which the page knows them.
cmake_minimum_required(VERSION 3.25)

set(own Films.js Selection.js Charts.js Filters.js Table.js Details.js Page.js)

# The hash of a text as a content security policy names it: in base64, where a program would say it in hexadecimal digits.
function(add_hash variable text)
    string(SHA256 digits "${text}")
    set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    # 32 bytes are ten groups of three and one of two, which is made whole with zeros.
    string(APPEND digits "00")
    set(base64 "")
    foreach(group RANGE 10)
        math(EXPR start "6 * ${group}")
        string(SUBSTRING "${digits}" ${start} 6 bytes)
        foreach(shift IN ITEMS 18 12 6 0)
            math(EXPR index "0x${bytes} >> ${shift} & 63")
            string(SUBSTRING "${alphabet}" ${index} 1 letter)
            string(APPEND base64 "${letter}")
        endforeach()
    endforeach()
    string(REGEX REPLACE ".$" "=" base64 "${base64}")
    set(${variable} "${${variable}} 'sha256-${base64}'" PARENT_SCOPE)
endfunction()

file(READ "${FOLDER}/Page.html" page)
file(READ "${FOLDER}/Page.css" style)
file(READ "${BANNER}" banner)
string(FIND "${banner}" "*/" end)
string(SUBSTRING "${banner}" 0 ${end} banner)
string(APPEND banner "*/\n")

set(scripts "")
set(policy "default-src 'none'; base-uri 'none'; form-action 'none'; img-src data:; script-src")
function(add_script text)
    if("${text}" MATCHES "</script|<!--")
        message(FATAL_ERROR "A script would end its own element.")
    endif()
    add_hash(policy "${text}")
    set(policy "${policy}" PARENT_SCOPE)
    set(scripts "${scripts}<script>${text}</script>\n" PARENT_SCOPE)
endfunction()

foreach(library IN LISTS LIBRARIES)
    file(READ "${library}" text)
    if(NOT "${text}" MATCHES "^/\\*!")
        string(PREPEND text "${banner}")
    endif()
    add_script("${text}")
endforeach()
set(text "\"use strict\";\n")
foreach(name IN LISTS own)
    file(READ "${FOLDER}/${name}" part)
    string(APPEND text "${part}")
endforeach()
add_script("${text}")
string(APPEND policy "; style-src")
add_hash(policy "${style}")

string(REPLACE "@POLICY@" "${policy}" page "${page}")
string(REPLACE "@STYLE@" "<style>${style}</style>" page "${page}")
string(REPLACE "@SCRIPTS@\n" "${scripts}" page "${page}")
file(WRITE "${OUTPUT}" "${page}")
