#include "dec_region.hpp"

#include <initializer_list>

int dec_button_x(int w, vantore_dec_region region)
{
    switch (region) {
    case DEC_MINIMIZE:
        return w - 67;
    case DEC_MAXIMIZE:
        return w - 45;
    case DEC_CLOSE:
    case DEC_NONE:
    case DEC_TITLEBAR:
    case DEC_GRIP:
        break;
    }
    return w - 23;
}

vantore_dec_region dec_region_at(int w, double rx, double ry)
{
    if (ry < dec_button_y || ry >= dec_button_y + dec_button_size)
        return DEC_TITLEBAR;
    for (const vantore_dec_region button : {DEC_CLOSE, DEC_MAXIMIZE, DEC_MINIMIZE}) {
        const int x = dec_button_x(w, button);
        if (rx >= x && rx < x + dec_button_size)
            return button;
    }
    return DEC_TITLEBAR;
}
