# Cross-compiles for Windows with Debian's mingw-w64; included by the toolchain file of a processor,
# which names it and its tools. What is built needs no other DLL than the system's.
set(CMAKE_SYSTEM_NAME Windows)

# The posix flavour has std::thread and std::mutex.
set(CMAKE_C_COMPILER ${orvToolPrefix}-gcc-posix)
set(CMAKE_CXX_COMPILER ${orvToolPrefix}-g++-posix)
set(CMAKE_RC_COMPILER ${orvToolPrefix}-windres)
find_program(CMAKE_CROSSCOMPILING_EMULATOR wine)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

set(CMAKE_FIND_ROOT_PATH /usr/${orvToolPrefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
