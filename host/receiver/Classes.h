#pragma once

#include "host/receiver/Class.h"

namespace receiver {

extern const Class kBackupActions;
extern const Class kStowlineHelpScreen;
extern const Class kStowline;
extern const Class kStowlineRestore;

}  // namespace receiver
