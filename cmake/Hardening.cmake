# Compiler and linker flags that make faults in memory hard to use; for this project's own code, never
# exported. Those that the compiler or the processor does not have are left out.
include(CheckCXXCompilerFlag)

option(ZU_HARDENING "Build with full RELRO, stack protector, fortify and control-flow protection" ON)

# Gives TARGET, an interface library, the flags.
function(zu_harden target)
  if(NOT ZU_HARDENING)
    return()
  endif()
  foreach(flag -fstack-protector-strong -fcf-protection)
    string(MAKE_C_IDENTIFIER "ZU_HAS${flag}" known)
    check_cxx_compiler_flag("-Werror ${flag}" ${known})
    if(${known})
      target_compile_options(${target} INTERFACE ${flag})
    endif()
  endforeach()
  # Needs an optimiser, and hides from the sanitizers what they would find. A build without a type
  # brings flags of its own.
  if(NOT "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "-fsanitize")
    target_compile_options(${target} INTERFACE
      "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  endif()
  target_link_options(${target} INTERFACE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
endfunction()
