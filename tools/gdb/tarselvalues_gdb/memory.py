"""The memory of the program, or of the core file, that gdb looks at."""

import gdb

# Read at once, and kept as long as the Memory. Within a page, so that all of a block can be read or
# nothing.
BLOCK = 256


class Unreadable(Exception):
    """There is no memory at an address."""

    def __init__(self, address):
        super().__init__(f"<unreadable {address:#x}>")


class Memory:
    """Reads numbers, all of which are little-endian. Made anew for each command: the program may
    have run on since the last."""

    def __init__(self):
        self.word = gdb.lookup_type("void").pointer().sizeof
        self._inferior = gdb.selected_inferior()
        self._blocks = {}

    def bytes(self, address, size):
        """The bytes there; raises Unreadable unless all can be read."""
        result = b""
        while len(result) < size:
            result += self._rest_of_block(address + len(result))[:size - len(result)]
        return result

    def _rest_of_block(self, address):
        start = address % BLOCK
        block = address - start
        if block not in self._blocks:
            try:
                self._blocks[block] = bytes(self._inferior.read_memory(block, BLOCK))
            except (gdb.error, OverflowError):
                self._blocks[block] = None
        if self._blocks[block] is None:
            raise Unreadable(address)
        return self._blocks[block][start:]

    def unsigned(self, address, size):
        return int.from_bytes(self.bytes(address, size), "little")

    def signed(self, address, size):
        return int.from_bytes(self.bytes(address, size), "little", signed=True)

    def pointer(self, address):
        return self.unsigned(address, self.word)

    def pointers(self, address, count):
        """Yields those of `count` pointers side by side that are not null."""
        end = address + count * self.word
        while address < end:
            block = self._rest_of_block(address)[:end - address]
            if not any(block):
                address += len(block)
                continue
            pointer = self.pointer(address)
            if pointer != 0:
                yield pointer
            address += self.word

    def text(self, address, most):
        """The bytes up to the first NUL, but no more than `most`."""
        result = b""
        while len(result) < most:
            block = self._rest_of_block(address + len(result))
            end = block.find(b"\0")
            if end >= 0:
                return (result + block[:end])[:most]
            result += block
        return result[:most]
