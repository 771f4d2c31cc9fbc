#include "theme.hpp"

#include "settings.hpp"

#include <algorithm>

struct theme {
    color unfocus, focus, foreground;
    float shadow; // alpha
};

// Indexed by g_theme_kind.
static constexpr std::array themes{
    theme{.unfocus{0.92F, 0.93F, 0.94F, 1},
          .focus{0.86F, 0.87F, 0.88F, 1},
          .foreground{0.17F, 0.18F, 0.20F, 1},
          .shadow = 0.12F},
    theme{.unfocus{0.21F, 0.22F, 0.25F, 1},
          .focus{0.26F, 0.27F, 0.29F, 1},
          .foreground{0.87F, 0.88F, 0.89F, 1},
          .shadow = 0.40F},
    theme{.unfocus{0.12F, 0.13F, 0.15F, 1},
          .focus{0.16F, 0.18F, 0.20F, 1},
          .foreground{0.89F, 0.90F, 0.92F, 1},
          .shadow = 0.55F},
};

static color tinted(const color &base, const color &tint)
{
    color result{0, 0, 0, 1};
    for (size_t i = 0; i < 3; i++)
        result[i] = 0.55F * base[i] + 0.45F * tint[i];
    return result;
}

void recompute_titlebar_colors()
{
    const theme &t = themes[size_t(std::clamp(g_theme_kind, 0, int(themes.size()) - 1))];
    g_tb_unfocus = t.unfocus;
    g_tb_focus = g_accent_set ? tinted(t.unfocus, g_accent) : t.focus;
    g_tb_fg = t.foreground;
    g_shadow_color = {0, 0, 0, t.shadow};
}
