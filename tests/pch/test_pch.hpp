#include "../support/desktop.hpp"
