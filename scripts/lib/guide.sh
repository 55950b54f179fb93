# Sourced by the scripts that do on a bare Debian 12 what docs/install.md says. Needs chroot.sh.

# bring_guide SOURCES ROOT: the page, and Python, which plays the reader and is no part of what is
# tried.
bring_guide() {
  mkdir "$2/root/guide" &&
    cp "$1/docs/install.md" "$1/scripts/lib/journey.py" "$2/root/guide" &&
    run_inside "$2" '
      export DEBIAN_FRONTEND=noninteractive
      apt-get -q update
      apt-get -q install --yes --no-install-recommends -o Dpkg::Use-Pty=0 python3'
}

# make_program SOURCES FOLDER: what the page asks for: the program, and the two files it shows.
make_program() {
  mkdir "$2" && cp "$1"/tests/install/{consumer/*,device.cmake} "$2"
}

# follow ROOT FOLDER SECTION: of the page, in a folder below /root. What gdb's Python compiles beside its
# own files would be taken for something that is left behind.
follow() {
  run_inside "$1" "
    export DEBIAN_FRONTEND=noninteractive PYTHONDONTWRITEBYTECODE=1
    cd '$2'
    python3 -B ../guide/journey.py ../guide/install.md '$3'"
}
