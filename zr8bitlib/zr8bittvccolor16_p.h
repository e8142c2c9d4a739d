#pragma once

// The colours of the TVC's 16-colour mode, the lists of them, and the rows of its pictures. Private to the
// library.

#include <QtGui/QRgb>

#include <array>

namespace ZR {

/// A component that is on, without intensity and with it.
constexpr int TVC16DarkLevel = 146;
constexpr int TVC16BrightLevel = 255;

/// Bytes of a row of two-pixel bytes. Widths go up to the largest int, where width + 1 is no int any more.
constexpr int TVC16BytesPerRow(int width)
{
    return width / 2 + width % 2;
}

/// The eight mixes of one level: bit 2 of the index is green, bit 1 red, bit 0 blue.
constexpr std::array<QRgb, 8> TVC16Mixes(int level)
{
    std::array<QRgb, 8> colors{};
    for (unsigned index = 0; index < colors.size(); ++index)
        colors[index] = qRgb(index & 2 ? level : 0, index & 4 ? level : 0, index & 1 ? level : 0);
    return colors;
}

// The lists are made by the compiler, so that also the global objects of a program may convert. All colours
// are opaque, whatever their top eight bits hold.

inline constexpr std::array<QRgb, 8> TVC16DarkColorList = TVC16Mixes(TVC16DarkLevel);
inline constexpr std::array<QRgb, 8> TVC16BrightColorList = TVC16Mixes(TVC16BrightLevel);

constexpr std::array<QRgb, 15> makeTVC16ColorList()
{
    std::array<QRgb, 15> colors{};
    for (size_t i = 0; i < colors.size(); ++i)
        colors[i] = i < 8 ? TVC16DarkColorList[i] : TVC16BrightColorList[i - 7];
    return colors;
}

/// The 15 distinct colours, in the order of the search for the closest one. Bright black is black.
inline constexpr std::array<QRgb, 15> TVC16ColorList = makeTVC16ColorList();

/// A chart round the colour circle. From each pure colour four darker levels follow and five lighter mixes.
inline constexpr std::array<QRgb, 99> TVC99ColorList = {
    0x000366,
    // red to magenta
    0xC9003C, 0xC93C80, 0xFF0080, 0x93003C, 0x80003C, 0xC90080,
    // magenta
    0xFF00FF, 0xC900C9, 0x930093, 0x800080, 0x3C003C, 0xC93CC9, 0xFF80FF, 0x933C93, 0x803C80, 0xC980C9,
    // magenta to blue
    0x8000C9, 0x3C0080, 0x8000FF, 0x3C0093, 0x803CC9, 0x3C00C9,
    // blue
    0x0000FF, 0x0000C9, 0x000093, 0x000080, 0x00003C, 0x3C3CC9, 0x8080FF, 0x3C3C93, 0x3C3C80, 0x8080C9,
    // blue to cyan
    0x003CC9, 0x3C80C9, 0x0080FF, 0x003C93, 0x003C80, 0x0080C9,
    // cyan
    0x00FFFF, 0x00C9C9, 0x009393, 0x008080, 0x003C3C, 0x3CC9C9, 0x80FFFF, 0x3C9393, 0x3C8080, 0x80C9C9,
    // cyan to green
    0x00C980, 0x00803C, 0x00FF80, 0x00933C, 0x3CC980, 0x00C93C,
    // green
    0x00FF00, 0x00C900, 0x009300, 0x008000, 0x003C00, 0x3CC93C, 0x80FF80, 0x3C933C, 0x3C803C, 0x80C980,
    // green to yellow
    0x3CC900, 0x80C93C, 0x80FF00, 0x3C9300, 0x3C8000, 0x80C900,
    // yellow
    0xFFFF00, 0xC9C900, 0x939300, 0x808000, 0x3C3C00, 0xC9C93C, 0xFFFF80, 0x93933C, 0x80803C, 0xC9C980,
    // yellow to red
    0xC98000, 0x803C00, 0xFF8000, 0x933C00, 0xC9803C, 0xC93C00,
    // red
    0xFF0000, 0xC90000, 0x930000, 0x800000, 0x3C0000, 0xC93C3C, 0xFF8080, 0x933C3C, 0x803C3C, 0xC98080,
    // white and black
    0xFFFFFF, 0x000000};

} // namespace ZR
