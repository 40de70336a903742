# cmake -DLAYER=FILE -P CheckLayers.cmake: ends with an error when a file of one library includes a header
# of a folder that the library does not link. FILE, written by velometer_layers, sets
#   library, links   its name and what it links, for the message
#   files            its sources and headers
#   roots            the folders that includes are relative to, the library's own first
#   seen             the folders that it may include from, its own among them
cmake_minimum_required(VERSION 3.25)
include(${LAYER})

set(wrong "")
foreach(file ${files})
    file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
    foreach(line ${lines})
        string(REGEX REPLACE "^[^\"]*\"([^\"]*)\".*" "\\1" header "${line}")
        foreach(root ${roots})
            if(EXISTS ${root}/${header})
                cmake_path(GET header PARENT_PATH folder)
                if(NOT "${root}/${folder}" IN_LIST seen)
                    list(APPEND wrong "${file} includes \"${header}\", but ${library} does not link the library of ${root}/${folder}.")
                endif()
                break()
            endif()
        endforeach()
    endforeach()
endforeach()

if(wrong)
    list(JOIN wrong "\n" wrong)
    list(JOIN links ", " links)
    message(FATAL_ERROR "${wrong}\n${library} links ${links}. If the include is right, the library is "
        "missing in its LINKS, after being declared above it.")
endif()
