#include "StowlineRestore.h"
