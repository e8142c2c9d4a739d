#pragma once

#include <QtCore/QString>

#include <optional>

/// A whole number of 0 or more, written as 512, 0x200 or $200. Nothing for any other text, nor for a number
/// beyond the range of int.
std::optional<int> parseNumber(const QString &text);

/// A number in base 16 with at least the given count of capital digits.
QString hexDigits(int number, int digits);

/// An address as the commands show it, such as $0200.
QString addressText(int address);
