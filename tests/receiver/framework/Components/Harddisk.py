harddiskmanager = object()
