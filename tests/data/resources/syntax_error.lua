return { kind = "Window", text = "unfinished
