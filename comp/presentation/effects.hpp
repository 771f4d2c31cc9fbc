// Effects that the GPU pays for.
#pragma once

// Whether there may be any: not with safe graphics, nor under software rendering unless the settings force
// them.
bool fx_on();
