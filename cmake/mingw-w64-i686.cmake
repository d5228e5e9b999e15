# 32-bit Windows, for 32-bit hosts.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(orvToolPrefix i686-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")

# SSE2 for numbers, so that both systems round alike; hosts align the stack to four bytes only.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
