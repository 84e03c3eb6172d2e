#include "tray_peer_process.h"
