#include "platform/linux/pocketsphinx/model_files.h"
