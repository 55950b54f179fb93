"""What ends all loops, whatever is in memory and however gdb's own limits are set."""

TEXT = 1 << 22         # characters of a string
NAME = 512             # characters of the name of a class or a field
BUCKETS = 1 << 20      # of a hash map
CHAINS = 1 << 16       # of the table of interned strings
PARTS = 100000         # of one container; and of all that one command shows
VALUES = 200000        # counted by one command
GRAPH = 5000           # drawn
DEPTH = 100            # of what is shown: as much as Python's stack surely takes
SMALL = 200            # values in what gdb is given to print part by part
BASES = 16             # of one class, and one above the other
SHOWN_TEXT = 64        # characters of what a writer has written, or a parser is to read
