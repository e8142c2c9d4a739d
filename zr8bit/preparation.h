#pragma once

#include <zr8bitkit/zr8bittvcscreen.h>

#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <optional>
#include <string>

namespace CLI {
class App;
}

/// What is done to a picture before it becomes bytes, as options ask for it.
struct Preparation
{
    using Screen = ZR::ZR8BitTVCScreen;

    std::optional<int> brightness;
    std::optional<int> contrast;
    std::optional<int> saturation;
    std::optional<QSize> size;
    std::optional<Screen::Fit> fit;
    std::optional<Screen::Dither> dither;
    std::optional<int> strength;

    /// Whether any of it is asked for.
    bool isNeeded() const;
};

/// Adds the option --size.
void addFitSizeOption(CLI::App &command, Preparation &preparation);

/// Adds all the others.
void addPreparationOptions(CLI::App &command, Preparation &preparation);

/// Checks the options as a whole; sizeOptions are those that give a size. Throws what ends parsing.
void checkPreparation(const Preparation &preparation, const std::string &sizeOptions);

/// The picture with its adjustments; as it is without any. Null when there is not enough memory.
QImage adjusted(QImage picture, const Preparation &preparation);

/// The frame of a sprite, prepared in full: pixels of the transparent colour have become transparent, and all
/// others have colours of the TVC. Null when there is not enough memory.
QImage preparedFrame(const QImage &frame, const QColor &transparent, const Preparation &preparation);
