#include "paleta.h"

#include <cmath>

namespace {

struct Color {
    QPalette::ColorRole papel;
    QRgb valor;
};

constexpr Color kOscuros[]{
    {QPalette::Window, 0xff26282b},      {QPalette::WindowText, 0xffeceef0},
    {QPalette::Base, 0xff1c1e20},        {QPalette::AlternateBase, 0xff222427},
    {QPalette::Text, 0xffeceef0},        {QPalette::Button, 0xff34373b},
    {QPalette::ButtonText, 0xffeceef0},  {QPalette::BrightText, 0xffffffff},
    {QPalette::Light, 0xff4a4e53},       {QPalette::Midlight, 0xff3f4347},
    {QPalette::Mid, 0xff1f2123},         {QPalette::Dark, 0xff17181a},
    {QPalette::Shadow, 0xff0c0d0e},      {QPalette::Link, 0xff7db8f5},
    {QPalette::LinkVisited, 0xffc3a0f0}, {QPalette::ToolTipBase, 0xff34373b},
    {QPalette::ToolTipText, 0xffeceef0}, {QPalette::PlaceholderText, 0xffa3a8ad},
    {QPalette::Highlight, 0xff3d8fe0},   {QPalette::HighlightedText, 0xff000000},
};
constexpr Color kClaros[]{
    {QPalette::Window, 0xfff0f1f2},      {QPalette::WindowText, 0xff1b1d1f},
    {QPalette::Base, 0xffffffff},        {QPalette::AlternateBase, 0xfff6f7f8},
    {QPalette::Text, 0xff1b1d1f},        {QPalette::Button, 0xffe6e8ea},
    {QPalette::ButtonText, 0xff1b1d1f},  {QPalette::BrightText, 0xffffffff},
    {QPalette::Light, 0xffffffff},       {QPalette::Midlight, 0xfff4f5f6},
    {QPalette::Mid, 0xffc6c9cc},         {QPalette::Dark, 0xffa3a7ab},
    {QPalette::Shadow, 0xff6b6f73},      {QPalette::Link, 0xff1a5fb4},
    {QPalette::LinkVisited, 0xff6b3fa0}, {QPalette::ToolTipBase, 0xffffffff},
    {QPalette::ToolTipText, 0xff1b1d1f}, {QPalette::PlaceholderText, 0xff5f6468},
    {QPalette::Highlight, 0xff2a6fc0},   {QPalette::HighlightedText, 0xffffffff},
};
constexpr Color kApagados[]{
    {QPalette::WindowText, 0xff85898d},
    {QPalette::Text, 0xff85898d},
    {QPalette::ButtonText, 0xff85898d},
};

template<size_t N>
QPalette pinta(const Color (&colores)[N]) {
    QPalette paleta;
    for (const Color &color : colores)
        paleta.setColor(color.papel, QColor(color.valor));
    for (const Color &color : kApagados)
        paleta.setColor(QPalette::Disabled, color.papel, QColor(color.valor));
    return paleta;
}

// How bright a colour looks, 0 to 1.
double claridad(const QColor &color) {
    const auto lineal = [](double v) {
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * lineal(color.redF()) + 0.7152 * lineal(color.greenF()) +
           0.0722 * lineal(color.blueF());
}

// Where black and white can be read equally well.
constexpr double kMedia = 0.179;

bool esOscura(const QPalette &paleta) {
    return claridad(paleta.color(QPalette::Window)) < kMedia;
}

} // namespace

QPalette paletaPara(const QPalette &delEscritorio, Esquema esquema,
                    const std::optional<QColor> &acento) {
    QPalette paleta = delEscritorio;
    if (esquema == Esquema::Oscuro && !esOscura(paleta))
        paleta = pinta(kOscuros);
    else if (esquema == Esquema::Claro && esOscura(paleta))
        paleta = pinta(kClaros);
    if (acento) {
        paleta.setColor(QPalette::Highlight, *acento);
        paleta.setColor(QPalette::HighlightedText,
                        claridad(*acento) > kMedia ? Qt::black : Qt::white);
    }
    return paleta;
}
