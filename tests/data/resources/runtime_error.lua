local t = nil
return { kind = "Window", text = t.field }
