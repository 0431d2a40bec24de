# Installs the build into a fresh folder, builds the example against that folder by find_package and
# once more by pkg-config, runs both, and compares what they print and write.
cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\nended with ${result}:\n${out}")
    endif()
    set(output "${out}" PARENT_SCOPE)
endfunction()

function(check_example program)
    file(REMOVE_RECURSE ${WORK_DIR}/out)
    file(MAKE_DIRECTORY ${WORK_DIR}/out)
    run(${program} ${WORK_DIR}/out)
    set(expected "Photos, Sailing/boat.txt\nPhotos, Sailing/boat.txt\nPhotos, lost.txt: Its file is missing.\n")
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} printed:\n${output}instead of:\n${expected}")
    endif()
    file(GLOB_RECURSE written RELATIVE ${WORK_DIR}/out ${WORK_DIR}/out/*)
    if(NOT written STREQUAL "Photos/Sailing/boat (2).txt;Photos/Sailing/boat.txt")
        message(FATAL_ERROR "${program} wrote: ${written}")
    endif()
endfunction()

set(prefix ${WORK_DIR}/prefix)
set(source ${SOURCE_DIR}/examples/own-item-model)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# Every installed header compiles alone, in the C++ that the public headers promise.
file(GLOB_RECURSE headers RELATIVE ${prefix}/include/DataExport ${prefix}/include/DataExport/*.h)
if(headers STREQUAL "" OR headers MATCHES "_p[.]h")
    message(FATAL_ERROR "installed headers: ${headers}")
endif()
set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig:$ENV{PKG_CONFIG_PATH})
run(${PKG_CONFIG} --cflags dataexport)
separate_arguments(cflags UNIX_COMMAND "${output}")
run(${PKG_CONFIG} --libs dataexport)
separate_arguments(libs UNIX_COMMAND "${output}")
separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
foreach(header IN LISTS headers)
    file(WRITE ${WORK_DIR}/headers.cpp "#include <${header}>\n#include <${header}>\n")
    run(${CXX} -std=c++17 -fPIC -Wall -Wextra -Werror -fsyntax-only ${flags} ${cflags} ${WORK_DIR}/headers.cpp)
endforeach()

run(${CMAKE_COMMAND} -S ${source} -B ${WORK_DIR}/build -G Ninja
    -D CMAKE_PREFIX_PATH=${prefix} -D CMAKE_CXX_COMPILER=${CXX} -D CMAKE_CXX_FLAGS=${CXX_FLAGS})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
check_example(${WORK_DIR}/build/own-item-model)

run(${CXX} -std=c++17 -fPIC ${flags} ${cflags} ${source}/main.cpp -o ${WORK_DIR}/by-pkg-config ${libs}
    -Wl,-rpath,${prefix}/${LIBDIR})
check_example(${WORK_DIR}/by-pkg-config)
