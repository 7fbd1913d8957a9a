"""The demo's driver: a message server, a sample host under Wine, and what the one heard of the other.

./demo.sh builds what is needed and starts this; by itself it needs a finished build (see --help).
"""

import sys

sys.dont_write_bytecode = True  # the source tree stays as it is

import endings
import options
import run


def main(arguments):
    """Runs the demo; the result is the exit status."""
    chosen = options.parse(arguments)
    if chosen.check_options:
        return 0
    return endings.report(lambda stop: run.run(chosen, stop))


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
