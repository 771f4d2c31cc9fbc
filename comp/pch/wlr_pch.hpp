#include "../wlr.hpp"
