#include "platform/AudioFile.h"
