"""What the message of each item must hold, path by path and byte by byte, worked out from the item
documents alone: a second reading of the rules, which shares nothing with the program."""
