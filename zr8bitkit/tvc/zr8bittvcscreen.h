#ifndef ZR8BITTVCSCREEN_H
#define ZR8BITTVCSCREEN_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QSize>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace ZR {

/// Pictures that suit the TVC's screen in its 16-colour mode: of its size and shape, mixed from its colours,
/// and shown in the shape that its pixels have. It comes before the conversions of ZR8BitTVCColor16:
///
///     using Screen = ZR::ZR8BitTVCScreen;
///     QImage picture("photo.jpg");
///     picture = Screen::fit(picture, QSize(Screen::Width, Screen::Height));
///     picture = Screen::dither(picture, Screen::Dither::FloydSteinberg);
///     const QByteArray screen = ZR::ZR8BitTVCColor16::QImageToTVC16Bin(picture); // Screen::Size bytes
///     Screen::screenView(picture).save("preview.png");                           // 640 x 480
///
/// The screen fills a picture of 4:3, so a pixel is 2.5 times as wide as high. What mixes on a screen, and in
/// the eye at a distance, is light; so scaling and dithering add up light, by the curve of sRGB, not the
/// numbers of a picture's components. The results are the same on every machine.
///
/// Colours are those that the pixels hold; colour spaces play no part, and transparency only where it is
/// spoken of. Results are in Format_RGB32 where no other format is named. A null image gives a null image,
/// and so does a result that is too large or that there is not enough memory for. Beside the result fit()
/// needs a few rows, dither() some rows or at most 20 MB. The operations keep no state, run on the caller's
/// thread alone, and may run on any number of threads at once.
///
/// Not modelled: the border of the screen, and how a TV set blurs pixels.
class ZR8BITKIT_EXPORT ZR8BitTVCScreen
{
public:
    static constexpr int Width = 128;                 ///< pixels of a row
    static constexpr int Height = 240;                ///< rows
    static constexpr int BytesPerRow = 64;            ///< of two pixels each
    static constexpr int Size = BytesPerRow * Height; ///< bytes of a screen
    static constexpr int PixelWidth = 5;  ///< of a pixel's shape, as Width x 5 to Height x 2 is 4:3
    static constexpr int PixelHeight = 2; ///< of the same

    static constexpr int LargestAdjustment = 1000; ///< percent

    /// What adjust() does to a picture, in percent from 0 to LargestAdjustment; beyond them these count. 100
    /// leaves it as it is. More may be added at the end.
    struct Adjustments
    {
        int brightness = 100; ///< the share of each component that remains: 0 gives black
        int contrast = 100;   ///< the share of each component's distance from the middle level: 0 gives grey
        int saturation =
            100; ///< the share of the distance from the grey of a pixel: 0 gives a picture in greys
    };

    /// The picture with other colours, in the format of toPixels(): brightness, contrast and saturation by
    /// the definitions of the CSS filter functions brightness(), contrast() and saturate(), one after the
    /// other, each within the range of components, which are rounded at the end. Alpha stays.
    static QImage adjust(QImage image, const Adjustments &adjustments);

    /// What fit() does where the picture's shape is not that of the result.
    enum class Fit
    {
        Contain, ///< shows the whole picture, with bars at two sides
        Cover,   ///< fills the result and cuts off what overhangs, the same on both sides
        Stretch, ///< fills the result with the whole picture, whatever shape it gets
    };

    /// How dither() draws a colour that the TVC has not.
    enum class Dither
    {
        Nearest,        ///< as the closest colour, by ZR8BitTVCColor16::QImageToTVC16ColoredQImage()
        FloydSteinberg, ///< passes on the error of each pixel to its neighbours: the finest mix
        Bayer2,         ///< by a pattern of 2 x 2: the same colour gives the same pattern, at any place
        Bayer4,         ///< the same by a pattern of 4 x 4
        Bayer8,         ///< the same by a pattern of 8 x 8, which has the most mixes
    };

    /// The picture, whose pixels are squares, scaled to a size in pixels of the screen. Each pixel of the
    /// result is the mean light of its area in the picture. The bars of Contain have the TVC colour that is
    /// closest to the background, and transparent pixels are laid on it as onBackground() does. At least one
    /// row and one column of the picture remain. An opaque picture that already has the size stays as it is
    /// under Stretch. A null image when a side of size is below 1 or above 65,535.
    static QImage fit(const QImage &image, const QSize &size, Fit fit = Fit::Contain,
                      const QColor &background = Qt::black);

    /// The picture on the TVC colour that is closest to the background: a pixel is mixed with it, in light,
    /// as far as it is transparent.
    static QImage onBackground(const QImage &image, const QColor &background = Qt::black);

    /// The picture in the 15 colours of the TVC, of the same size. A picture that has no others stays as it
    /// is.
    ///
    /// strength, in percent, is how much of each error is passed on, or made up for within a pattern; beyond
    /// 0 and 100 these count. The less it is, the more of a colour's surroundings stay flat; with 0 the
    /// dither is Nearest.
    ///
    /// Rows at the top and bottom and columns at the left and right that have one TVC colour from end to end,
    /// such as the bars of fit(), are margins: Floyd-Steinberg passes no error on into them.
    static QImage dither(const QImage &image, Dither dither, int strength = 100);

    // A sprite's frame, which has transparent pixels. Results are in Format_ARGB32.

    /// The frame scaled as fit() scales a picture, with transparent bars. A pixel of the result is opaque
    /// when at least half of its area is, and has the mean light of what is opaque there; else all its bits
    /// are 0.
    static QImage fitFrame(const QImage &frame, const QSize &size, Fit fit = Fit::Contain);

    /// The frame in the 15 colours of the TVC, as dither() draws them. Pixels with an alpha below 128 of 255
    /// become transparent, with all bits 0, and pass no error on; all others become opaque.
    static QImage ditherFrame(const QImage &frame, Dither dither, int strength = 100);

    // Pixels

    /// The picture in the shape that the screen gives it: each pixel 5 x 2, as repeatPixels() does.
    static QImage screenView(const QImage &image);

    /// The picture with each pixel as a block of across x down, in the format of toPixels(). A null image
    /// when one of these is below 1.
    static QImage repeatPixels(const QImage &image, int across, int down);

    /// The picture in Format_ARGB32 when it can have transparent pixels, in Format_RGB32 when it cannot.
    /// Colours of premultiplied formats are divided by alpha. A program best does this once, where it reads
    /// pictures.
    static QImage toPixels(const QImage &image);

    /// The bytes of a row of two-pixel bytes; 0 when width is below 1.
    static int bytesPerRow(int width);
};

} // namespace ZR

#endif
