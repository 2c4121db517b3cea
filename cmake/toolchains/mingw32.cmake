# SPDX-License-Identifier: MIT
# Windows, 32 bit.
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
