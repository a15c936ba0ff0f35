# With VELKOR_HARDEN, a fault that got past all tests ends the program at once instead of giving a
# wrong answer. What it sets is checked on the built program by a test.
if(VELKOR_HARDEN AND WIN32)
  # Where the program is loaded, and that its data does not run, is the linker's default.
  target_compile_options(velkor_compile INTERFACE -D_GLIBCXX_ASSERTIONS -fstack-protector-strong)
  target_link_options(velkor_compile INTERFACE -fstack-protector-strong)  # for the function it calls
elseif(VELKOR_HARDEN)
  target_compile_options(velkor_compile INTERFACE
    -fPIE -U_FORTIFY_SOURCE $<$<NOT:${quickly}>:-D_FORTIFY_SOURCE=3> -D_GLIBCXX_ASSERTIONS
    -fstack-protector-strong -fstack-clash-protection)
  target_link_options(velkor_compile INTERFACE
    $<$<NOT:$<BOOL:${VELKOR_STATIC}>>:-pie> -Wl,-z,relro,-z,now)
endif()
