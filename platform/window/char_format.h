// The character format record of rich edit controls and of the font dialog that starts from one:
// face, size in twips, effects, with the published names and values.
#pragma once

#include "platform/draw/gdi_types.h"

constexpr DWORD CFM_BOLD = 0x00000001;
constexpr DWORD CFM_ITALIC = 0x00000002;
constexpr DWORD CFM_COLOR = 0x40000000;
constexpr DWORD CFM_SIZE = 0x80000000;
constexpr DWORD CFM_FACE = 0x20000000;
constexpr DWORD CFM_CHARSET = 0x08000000;
constexpr DWORD CFE_BOLD = 0x0001;
constexpr DWORD CFE_ITALIC = 0x0002;
constexpr DWORD CFE_AUTOCOLOR = 0x40000000;

struct CHARFORMAT2 {
    UINT cbSize = sizeof(CHARFORMAT2);
    DWORD dwMask = 0;
    DWORD dwEffects = 0;
    LONG yHeight = 0; // twips
    LONG yOffset = 0;
    COLORREF crTextColor = 0;
    BYTE bCharSet = 0;
    BYTE bPitchAndFamily = 0;
    char szFaceName[LF_FACESIZE] = {};
    WORD wWeight = 0;
    SHORT sSpacing = 0;
    COLORREF crBackColor = 0;
    LCID lcid = 0;
};
using CHARFORMAT = CHARFORMAT2;
