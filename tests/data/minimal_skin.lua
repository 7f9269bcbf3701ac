-- The smallest skin script the toolkit accepts: a "Skin" table with no skins.
Skin = {}
