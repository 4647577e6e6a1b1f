#!/usr/bin/env python3
"""A host in Python: changes the name of a recorder, sends it and prints what the recorder has then, or shows the setup
window.

    host.py [--library FILE] NAME ADDRESS
    host.py [--library FILE] --window [--close-when-loaded] ADDRESS
"""

import argparse
import sys

import paravue

NAME = "net/untitled/HOSTNAME"


def main():
    parser = argparse.ArgumentParser(description="Names a recorder, or shows its setup window.")
    parser.add_argument("--library", default="libParavueSetup.so.1", help="the shared library")
    parser.add_argument("--window", action="store_true", help="show the setup window")
    parser.add_argument("--close-when-loaded", action="store_true", help="with --window: end without a user")
    parser.add_argument("name", nargs="?", help="the new name of the recorder")
    parser.add_argument("address", help="login:password@host[:port]")
    options = parser.parse_args()
    if options.window == (options.name is not None):
        parser.error("either a name or --window is needed")

    try:
        with paravue.Library(options.library, options.window) as library:
            with paravue.Store(library, options.address) as store:
                if options.window:
                    when_loaded = (lambda close: close()) if options.close_when_loaded else None
                    print("accepted" if store.show(when_loaded) else "cancelled")
                    store.finish(asks_user=True)
                else:
                    store.load()
                    store[NAME] = options.name
                    store.save()
                    store.load()
                    print(store[NAME])
    except paravue.Failure as failure:
        print(failure, file=sys.stderr)
        return failure.result
    return 0


if __name__ == "__main__":
    sys.exit(main())
