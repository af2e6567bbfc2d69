# shellcheck shell=bash
# The documentation site.

# make_docs: builds the site from scratch; fails on any warning, such as a member without a contract.
make_docs() (
    cd "$QV_ROOT" || exit
    QV_VERSION=$(sed -n 's/^project(QvCommon VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
    export QV_VERSION
    python3 -B scripts/lib/doxygen_test.py && rm -rf build/docs && mkdir -p build/docs && doxygen scripts/lib/Doxyfile
)
