#include "BackupActions.h"
