Skin = {
