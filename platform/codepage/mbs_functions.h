// The runtime library's multi-byte forms, on the system code page. Strings end at their NUL.
#pragma once

#include "platform/core/win_types.h"

#include <cstddef>

BOOL IsDBCSLeadByte(BYTE byte);
int _mbscmp(const unsigned char* a, const unsigned char* b);
int _mbsicmp(const unsigned char* a, const unsigned char* b);
int _mbsicoll(const unsigned char* a, const unsigned char* b);
unsigned char* _mbsstr(const unsigned char* haystack, const unsigned char* needle);
unsigned char* _mbschr(const unsigned char* text, unsigned int ch);
unsigned char* _mbsupr(unsigned char* text);
unsigned char* _mbslwr(unsigned char* text);
unsigned char* _mbsinc(const unsigned char* text);
std::size_t _mbsspn(const unsigned char* text, const unsigned char* set);
std::size_t _mbscspn(const unsigned char* text, const unsigned char* set);
