// Type codes of record fields and resources.
#pragma once

#include "Platform/Support/SupportDefs.h"

inline constexpr type_code B_ANY_TYPE = FourCC("ANYT");
inline constexpr type_code B_BOOL_TYPE = FourCC("BOOL");
inline constexpr type_code B_CHAR_TYPE = FourCC("CHAR");
inline constexpr type_code B_INT8_TYPE = FourCC("BYTE");
inline constexpr type_code B_UINT8_TYPE = FourCC("UBYT");
inline constexpr type_code B_INT16_TYPE = FourCC("SHRT");
inline constexpr type_code B_UINT16_TYPE = FourCC("USHT");
inline constexpr type_code B_INT32_TYPE = FourCC("LONG");
inline constexpr type_code B_UINT32_TYPE = FourCC("ULNG");
inline constexpr type_code B_INT64_TYPE = FourCC("LLNG");
inline constexpr type_code B_UINT64_TYPE = FourCC("ULLG");
inline constexpr type_code B_FLOAT_TYPE = FourCC("FLOT");
inline constexpr type_code B_DOUBLE_TYPE = FourCC("DBLE");
inline constexpr type_code B_STRING_TYPE = FourCC("CSTR");
inline constexpr type_code B_MESSAGE_TYPE = FourCC("MSGG");
inline constexpr type_code B_POINT_TYPE = FourCC("BPNT");
inline constexpr type_code B_RECT_TYPE = FourCC("RECT");
inline constexpr type_code B_RGB_COLOR_TYPE = FourCC("RGBC");
inline constexpr type_code B_RGB_32_BIT_TYPE = FourCC("RGBB");
inline constexpr type_code B_POINTER_TYPE = FourCC("PNTR");
inline constexpr type_code B_REF_TYPE = FourCC("RREF");
inline constexpr type_code B_MESSENGER_TYPE = FourCC("MSNG");
inline constexpr type_code B_RAW_TYPE = FourCC("RAWT");
inline constexpr type_code B_MIME_STRING_TYPE = FourCC("MIMS");
inline constexpr type_code B_ASCII_TYPE = FourCC("TEXT");
inline constexpr type_code B_OFF_T_TYPE = FourCC("OFFT");
inline constexpr type_code B_SIZE_T_TYPE = FourCC("SIZT");
inline constexpr type_code B_SSIZE_T_TYPE = FourCC("SSZT");
inline constexpr type_code B_TIME_TYPE = FourCC("TIME");
