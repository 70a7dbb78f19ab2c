# Hardening against memory errors: stack canaries, checked copies, tracked branches, tables that are read-only after loading,
# and position-independent programs. Each flag is used only if compiler and linker have it.
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
  # Checked copies need optimisation, and sanitizers have their own checks.
  if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    target_compile_options(latigo_flags INTERFACE
      $<$<NOT:$<CONFIG:Debug,>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug,>>:-D_FORTIFY_SOURCE=2>)
  endif()
  # The C library's start-up files may lack the note on shadow stacks, and would remove it from all files linked with them;
  # their calls and returns match, so the note holds. Branch targets are different: those files must mark them.
  foreach(flag relro now shstk)
    string(MAKE_C_IDENTIFIER LATIGO_LINKS_${flag} known)
    check_linker_flag(CXX LINKER:-z,${flag} ${known})
    if(${known})
      target_link_options(latigo_flags INTERFACE LINKER:-z,${flag})
    endif()
  endforeach()
endif()
