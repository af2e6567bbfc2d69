# shellcheck shell=bash
# The documentation site.

# make_docs: makes the site anew; fails on any warning.
make_docs() (
    cd "$QV_ROOT" || exit
    QV_VERSION=$(sed -n 's/^project(QvCommon VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
    export QV_VERSION
    rm -rf build/docs && mkdir -p build/docs && doxygen scripts/lib/Doxyfile
)
