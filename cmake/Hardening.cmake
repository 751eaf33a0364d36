# What makes it hard to turn a mistake of the program against its user, in what users get: checks of
# the stack and of the C library's calls, code at an address that nobody knows before, and tables of
# the linker that cannot be written once the program runs.
#
# Sanitizers check more than this, and some of it is in their way.

if(NOT tessaly_instrumentation)
    # Qt's libraries come with -fPIC, which wins over -fPIE and serves an executable as well.
    add_compile_options(
        "$<$<CONFIG:Release>:-fPIE;-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    add_link_options(
        "$<$<CONFIG:Release>:LINKER:-z,relro;LINKER:-z,now>"
        "$<$<AND:$<CONFIG:Release>,$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>>:-pie>")
endif()
