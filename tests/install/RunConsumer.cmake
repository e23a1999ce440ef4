# Installs the library into a private prefix, then builds and runs a small
# consumer against it twice: through find_package and through pkg-config.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
                RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "install failed: ${rc}")
endif()
set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
foreach(mode package pkgconfig)
  set(bin ${WORK_DIR}/build-${mode})
  execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${bin}
                    -DCMAKE_PREFIX_PATH=${prefix} -DCONSUMER_MODE=${mode}
                    "-DCMAKE_CXX_FLAGS=${flags}"
                  RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "configure (${mode}) failed: ${rc}")
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} --build ${bin} RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "build (${mode}) failed: ${rc}")
  endif()
  execute_process(COMMAND ${bin}/consumer RESULT_VARIABLE rc OUTPUT_VARIABLE out)
  message(STATUS "${mode}: ${out}")
  if(rc)
    message(FATAL_ERROR "consumer (${mode}) failed: ${rc}")
  endif()
endforeach()
