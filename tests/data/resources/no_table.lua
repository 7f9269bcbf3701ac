return 12
