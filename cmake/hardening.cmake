# What makes a fault of memory harder to use: canaries in stack frames, checked copies, tracked branches, tables that are
# read-only once a program is loaded, and programs at a random address. Each flag only where compiler and linker have it.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)

if(NOT WIN32)
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER LATIGO_HAS${flag} known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(latigo_flags INTERFACE ${flag})
    endif()
  endforeach()
  # Checked copies need optimisation, and the sanitizers check by themselves.
  if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    target_compile_options(latigo_flags INTERFACE
      $<$<NOT:$<CONFIG:Debug,>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug,>>:-D_FORTIFY_SOURCE=2>)
  endif()
  # The C library's start-up files may lack the note on shadow stacks, which would take it from whatever is linked with
  # them; they return as they were called, so the note holds. Branch targets are different: those files must mark them.
  foreach(flag relro now shstk)
    string(MAKE_C_IDENTIFIER LATIGO_LINKS_${flag} known)
    check_linker_flag(CXX LINKER:-z,${flag} ${known})
    if(${known})
      target_link_options(latigo_flags INTERFACE LINKER:-z,${flag})
    endif()
  endforeach()
endif()
