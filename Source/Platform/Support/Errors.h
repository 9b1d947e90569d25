// The platform's status codes. Success is B_OK (0), every error is negative.
#pragma once

#include "Platform/Support/SupportDefs.h"

constexpr status_t StatusCode(uint32 bits) {
    return static_cast<status_t>(bits);
}

inline constexpr status_t B_OK = 0;
inline constexpr status_t B_NO_ERROR = 0;
inline constexpr status_t B_ERROR = -1;

inline constexpr status_t B_NO_MEMORY = StatusCode(0x80000000u);
inline constexpr status_t B_IO_ERROR = StatusCode(0x80000001u);
inline constexpr status_t B_PERMISSION_DENIED = StatusCode(0x80000002u);
inline constexpr status_t B_BAD_INDEX = StatusCode(0x80000003u);
inline constexpr status_t B_BAD_TYPE = StatusCode(0x80000004u);
inline constexpr status_t B_BAD_VALUE = StatusCode(0x80000005u);
inline constexpr status_t B_MISMATCHED_VALUES = StatusCode(0x80000006u);
inline constexpr status_t B_NAME_NOT_FOUND = StatusCode(0x80000007u);
inline constexpr status_t B_TIMED_OUT = StatusCode(0x80000009u);
inline constexpr status_t B_INTERRUPTED = StatusCode(0x8000000Au);
inline constexpr status_t B_WOULD_BLOCK = StatusCode(0x8000000Bu);
inline constexpr status_t B_NO_INIT = StatusCode(0x8000000Du);
inline constexpr status_t B_BUSY = StatusCode(0x8000000Eu);
inline constexpr status_t B_NOT_ALLOWED = StatusCode(0x8000000Fu);
inline constexpr status_t B_BAD_DATA = StatusCode(0x80000010u);

inline constexpr status_t B_BAD_SEM_ID = StatusCode(0x80001000u);
inline constexpr status_t B_BAD_THREAD_ID = StatusCode(0x80001100u);
inline constexpr status_t B_NO_MORE_THREADS = StatusCode(0x80001101u);
inline constexpr status_t B_BAD_THREAD_STATE = StatusCode(0x80001102u);
inline constexpr status_t B_BAD_PORT_ID = StatusCode(0x80001200u);

inline constexpr status_t B_BAD_REPLY = StatusCode(0x80002000u);
inline constexpr status_t B_DUPLICATE_REPLY = StatusCode(0x80002001u);
inline constexpr status_t B_NOT_A_MESSAGE = StatusCode(0x80002010u);

inline constexpr status_t B_FILE_ERROR = StatusCode(0x80006000u);
inline constexpr status_t B_FILE_EXISTS = StatusCode(0x80006002u);
inline constexpr status_t B_ENTRY_NOT_FOUND = StatusCode(0x80006003u);
inline constexpr status_t B_NAME_TOO_LONG = StatusCode(0x80006004u);
inline constexpr status_t B_NOT_A_DIRECTORY = StatusCode(0x80006005u);
inline constexpr status_t B_DEVICE_FULL = StatusCode(0x80006007u);
inline constexpr status_t B_READ_ONLY_DEVICE = StatusCode(0x80006008u);
inline constexpr status_t B_IS_A_DIRECTORY = StatusCode(0x80006009u);
inline constexpr status_t B_NO_MORE_FDS = StatusCode(0x8000600Au);
inline constexpr status_t B_LINK_LIMIT = StatusCode(0x8000600Cu);
inline constexpr status_t B_UNSUPPORTED = StatusCode(0x8000600Eu);

inline constexpr status_t B_BUFFER_OVERFLOW = StatusCode(0x80007029u);
