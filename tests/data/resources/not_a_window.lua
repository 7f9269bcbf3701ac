return { kind = "Panel", name = "just a panel" }
