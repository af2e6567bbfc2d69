# shellcheck shell=bash
# The documentation site.

# make_docs: builds the site from scratch; fails on any warning, such as a member without a contract, and on dead links.
make_docs() (
    cd "$QV_ROOT" || exit
    QV_VERSION=$(sed -n 's/^project(QvCommon VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
    export QV_VERSION
    rm -rf build/docs
    python3 -B scripts/lib/doxygen_test.py && mkdir -p build/docs/html/examples && cp examples/*.cpp build/docs/html/examples &&
        doxygen scripts/lib/Doxyfile && python3 -B scripts/lib/links.py build/docs/html
)
