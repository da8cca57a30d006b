#include "StowlineHelpScreen.h"
