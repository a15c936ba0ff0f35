#pragma once

#include <cstdint>

#include "platform/message_target.h"

namespace velkor {

// What the jobs post to the main window. The parameter is 0 where none is named.
constexpr uint32_t WM_STK_ANALYSIS_START = WM_USER + 10;  // number of modules
constexpr uint32_t WM_STK_ANALYSIS_END = WM_USER + 11;
constexpr uint32_t WM_STK_ANALYSIS_STEP = WM_USER + 12;
constexpr uint32_t WM_STK_SPECREAD_START = WM_USER + 13;
constexpr uint32_t WM_STK_SPECREAD_END = WM_USER + 14;
constexpr uint32_t WM_STK_SPECREAD_FILE = WM_USER + 15;  // length in bytes
constexpr uint32_t WM_STK_SPECREAD_FILE_END = WM_USER + 16;
constexpr uint32_t WM_STK_SPECREAD_PROGRESS = WM_USER + 17;  // position in bytes
constexpr uint32_t WM_STK_SPECWRITE_START = WM_USER + 18;    // number of functions
constexpr uint32_t WM_STK_SPECWRITE_END = WM_USER + 19;
constexpr uint32_t WM_STK_SPECWRITE_PROGRESS = WM_USER + 20;  // functions written
constexpr uint32_t WM_STK_CHAINSAVE_START = WM_USER + 21;     // expected lines
constexpr uint32_t WM_STK_CHAINSAVE_END = WM_USER + 22;
constexpr uint32_t WM_STK_CHAINSAVE_PROGRESS = WM_USER + 23;  // lines written

// It moves the progress bar and does nothing else.
constexpr bool IsOnlyProgress(uint32_t message) {
  return message == WM_STK_ANALYSIS_STEP || message == WM_STK_SPECREAD_FILE ||
         message == WM_STK_SPECREAD_FILE_END || message == WM_STK_SPECREAD_PROGRESS ||
         message == WM_STK_SPECWRITE_PROGRESS || message == WM_STK_CHAINSAVE_PROGRESS;
}

}  // namespace velkor
