#pragma once

#include "desk/tree/Files.h"

namespace desk {

/// The channel lists of a receiver that has been searched and sorted: several hundred services,
/// bouquets, parental lists and tuner tables.
Files usedChannelData();

/// The channel lists that the image comes with: one transponder and empty favourites.
Files factoryChannelData();

}  // namespace desk
