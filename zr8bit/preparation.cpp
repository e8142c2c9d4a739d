#include "preparation.h"

#include "options.h"

#include <zr8bitkit/zr8bittvcsheet.h>

#include <array>
#include <utility>

using Screen = ZR::ZR8BitTVCScreen;

bool Preparation::isNeeded() const
{
    return brightness || contrast || saturation || size || dither;
}

void addFitSizeOption(CLI::App &command, Preparation &preparation)
{
    constexpr int LongestFittedSide = 4096;
    addSizeOption(command, "--size", LongestFittedSide, preparation.size,
                  "Scale to a size in pixels of the TVC, which are 2.5 times as wide as high");
}

void addPreparationOptions(CLI::App &command, Preparation &preparation)
{
    const auto addPercent = [&command](const std::string &name, int largest, std::optional<int> &target,
                                       const std::string &description) {
        addNumberOption(command, name, "PERCENT", {0, largest}, target, description);
    };
    constexpr int Largest = Screen::LargestAdjustment;
    addPercent("--brightness", Largest, preparation.brightness, "Make it darker or brighter; 100 leaves it");
    addPercent("--contrast", Largest, preparation.contrast, "Bring it closer to grey or away from it, next");
    addPercent("--saturation", Largest, preparation.saturation, "Make colours paler or stronger, after that");
    addWordOption(
        command, "--fit", {QStringLiteral("contain"), QStringLiteral("cover"), QStringLiteral("stretch")},
        [&preparation](size_t index) {
            constexpr std::array Fits = {Screen::Fit::Contain, Screen::Fit::Cover, Screen::Fit::Stretch};
            preparation.fit = Fits.at(index);
        },
        "Where the shapes differ, show all with bars, fill and cut, or fill with all; contain by default");
    addWordOption(
        command, "--dither",
        {QStringLiteral("none"), QStringLiteral("bayer"), QStringLiteral("bayer2"), QStringLiteral("bayer4"),
         QStringLiteral("bayer8"), QStringLiteral("floyd-steinberg")},
        [&preparation](size_t index) {
            constexpr std::array Dithers = {Screen::Dither::Nearest, Screen::Dither::Bayer8,
                                            Screen::Dither::Bayer2,  Screen::Dither::Bayer4,
                                            Screen::Dither::Bayer8,  Screen::Dither::FloydSteinberg};
            preparation.dither = Dithers.at(index);
        },
        "Mix colours that the TVC has not, in a pattern (bayer is bayer8) or most finely; none by default");
    addPercent("--dither-strength", 100, preparation.strength,
               "Mix less, so that more areas stay flat; 100 by default, 0 is as none");
}

void checkPreparation(const Preparation &preparation, const std::string &sizeOptions)
{
    if (preparation.fit && !preparation.size)
        throw CLI::ValidationError("--fit", "needs " + sizeOptions);
    if (preparation.strength && !preparation.dither)
        throw CLI::ValidationError("--dither-strength", "needs --dither");
}

QImage adjusted(QImage picture, const Preparation &preparation)
{
    if (!preparation.brightness && !preparation.contrast && !preparation.saturation)
        return picture;
    Screen::Adjustments adjustments;
    adjustments.brightness = preparation.brightness.value_or(adjustments.brightness);
    adjustments.contrast = preparation.contrast.value_or(adjustments.contrast);
    adjustments.saturation = preparation.saturation.value_or(adjustments.saturation);
    return Screen::adjust(std::move(picture), adjustments);
}

QImage preparedFrame(const QImage &frame, const QColor &transparent, const Preparation &preparation)
{
    QImage result = adjusted(ZR::ZR8BitTVCSheet::withTransparent(frame, transparent), preparation);
    if (preparation.size)
        result = Screen::fitFrame(result, *preparation.size, preparation.fit.value_or(Screen::Fit::Contain));
    return Screen::ditherFrame(result, preparation.dither.value_or(Screen::Dither::Nearest),
                               preparation.strength.value_or(100));
}
