"""A model of the messages: computes the contents of every stream of each item's message from the
XML documents alone. It is a second implementation, which shares nothing with the program."""
