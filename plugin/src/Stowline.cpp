#include "Stowline.h"
