// Draws a tree menu where the page's script calls drawMenu. A page builds the tree with
//
//   menu = new TreeMenu(directory, name, target, style, remembers, plain);
//   node = menu.addItem(new TreeNode(text, picture, link, isOpen, folds, style, target, openPicture));
//   node.addItem(...);
//   menu.drawMenu();
//   menu.resetBranches();
//
// directory    of this script; unused
// name         of the variable that holds the menu; unused
// target       the default frame for links
// style        the list's style class, or a node's
// remembers    whether the window remembers which branches are open, for all pages of the folder
// plain        no pictures on the top level
// text         plain text without markup; text after a tab is shown as a note beside it, such as a size
// link         may be empty
// isOpen       whether a branch is initially open; branches that lead to the current page always are
// folds        whether the branch can be opened and closed
//
// Branches are drawn when first opened, so that large trees load fast. The arrow keys, Home, End, Enter and Space work
// as in any tree, and letters move to the next item that begins with them.
(function () {
  "use strict";

  function addItem(node) {
    node.parent = this;
    this.items.push(node);
    return node;
  }

  function element(name, className, parent) {
    var made = document.createElement(name);
    if (className) made.className = className;
    if (parent) parent.appendChild(made);
    return made;
  }

  // ---- A node

  function TreeNode(text, picture, link, isOpen, folds, style, target, openPicture) {
    var tab = text.indexOf("\t");
    this.text = tab < 0 ? text : text.slice(0, tab);
    this.note = tab < 0 ? "" : text.slice(tab + 1);
    this.picture = picture;
    this.openPicture = openPicture || picture;
    this.link = link;
    this.isFirstOpen = this.isOpen = Boolean(isOpen);
    this.folds = folds !== false;
    this.style = style;
    this.target = target;
    this.items = [];
  }

  TreeNode.prototype.addItem = addItem;

  TreeNode.prototype.menu = function () {
    var root = this;
    while (root.parent) root = root.parent;
    return root;
  };

  // The key under which the window remembers it: its own text and those of its ancestors.
  TreeNode.prototype.path = function () {
    return (this.parent.parent ? this.parent.path() : "") + "\n" + this.text;
  };

  TreeNode.prototype.draw = function (list) {
    var item = this.item = element("li", "", list), row = element("span", "treeMenuRow", item), menu = this.menu();
    item.treeNode = this;
    item.tabIndex = -1;
    item.setAttribute("role", "treeitem");
    this.twist = element("span", "treeMenuTwist", row);
    this.twist.setAttribute("aria-hidden", "true");
    this.drawPicture(row, menu);
    this.drawText(row, menu);
    if (this.style) item.setAttribute("aria-current", "true");
    this.showState();
  };

  TreeNode.prototype.drawPicture = function (row, menu) {
    if (!this.picture || (menu.plain && this.parent === menu)) return;
    this.image = element("img", "", row);
    this.image.alt = "";
  };

  TreeNode.prototype.drawText = function (row, menu) {
    var text = element(this.link ? "a" : "span", this.style, row);
    text.textContent = this.text;
    if (this.note) element("small", "treeMenuNote", row).textContent = this.note;
    if (!this.link) return;
    text.href = this.link;
    text.target = this.target || menu.target;
    text.tabIndex = -1;
  };

  TreeNode.prototype.isBranch = function () { return this.items.length > 0; };

  TreeNode.prototype.showState = function () {
    if (!this.item) return;
    if (this.image) this.image.src = this.isOpen ? this.openPicture : this.picture;
    if (!this.isBranch()) return;
    this.item.setAttribute("aria-expanded", String(this.isOpen));
    this.twist.textContent = !this.folds ? "" : this.isOpen ? "\u25BE" : "\u25B8";
    if (this.isOpen && !this.list) this.drawList();
    if (this.list) this.list.hidden = !this.isOpen;
  };

  TreeNode.prototype.drawList = function () {
    var list = this.list = element("ul", "", this.item);
    list.setAttribute("role", "group");
    this.items.forEach(function (node) { node.draw(list); });
  };

  TreeNode.prototype.setOpen = function (isOpen) {
    if (!this.isBranch() || !this.folds || this.isOpen === isOpen) return;
    this.isOpen = isOpen;
    this.showState();
    this.menu().remember(this);
  };

  // ---- The menu

  function TreeMenu(directory, name, target, style, remembers, plain) {
    this.target = target;
    this.style = style;
    this.remembers = remembers;
    this.plain = plain;
    this.items = [];
  }

  TreeMenu.prototype.addItem = addItem;

  TreeMenu.prototype.drawMenu = function () {
    var script = document.currentScript, list = this.list = element("ul", this.style);
    list.setAttribute("role", "tree");
    if (script) script.parentNode.insertBefore(list, script);
    else document.body.appendChild(list);
    this.items.forEach(function (node) { node.draw(list); });
    this.current = list.querySelector("[aria-current]") || list.firstElementChild;
    if (this.current) this.current.tabIndex = 0;
    list.addEventListener("click", this.onClick.bind(this));
    list.addEventListener("keydown", this.onKey.bind(this));
  };

  // Restores the branches that the window remembers; others get their initial state.
  TreeMenu.prototype.resetBranches = function () {
    var states = this.readStates(), open = this.items.slice();
    while (open.length) {
      var node = open.pop(), state = states[node.path()];
      node.items.forEach(function (below) { open.push(below); });
      if (!node.isBranch()) continue;
      node.isOpen = state === undefined || !node.folds ? node.isFirstOpen : state;
      node.showState();
    }
    this.moveTabStop();
  };

  // The item in the tab order may be in a branch that is now closed.
  TreeMenu.prototype.moveTabStop = function () {
    if (!this.current) return;
    var shown = this.current.treeNode;
    for (var above = shown.parent; above.parent; above = above.parent)
      if (!above.isOpen) shown = above;
    this.current.tabIndex = -1;
    this.current = shown.item;
    this.current.tabIndex = 0;
  };

  TreeMenu.prototype.storageKey = function () {
    return "TreeMenu " + location.pathname.replace(/[^\/]*$/, "");
  };

  TreeMenu.prototype.readStates = function () {
    try { return (this.remembers && JSON.parse(sessionStorage.getItem(this.storageKey()))) || {}; }
    catch (unreadable) { return {}; }
  };

  TreeMenu.prototype.remember = function (node) {
    if (!this.remembers) return;
    var states = this.readStates();
    states[node.path()] = node.isOpen;
    try { sessionStorage.setItem(this.storageKey(), JSON.stringify(states)); } catch (refused) { }
  };

  // Only the item that had the focus last is in the tab order.
  TreeMenu.prototype.focusOn = function (item) {
    if (!item) return;
    this.current.tabIndex = -1;
    this.current = item;
    item.tabIndex = 0;
    item.focus();
  };

  TreeMenu.prototype.onClick = function (event) {
    var item = event.target.closest("li"), node = item && item.treeNode;
    if (!node) return;
    this.focusOn(item);
    if (!event.target.closest("a")) node.setOpen(!node.isOpen);
  };

  function shownItems(list) {
    return Array.prototype.filter.call(list.querySelectorAll("li"), function (item) {
      return item.getClientRects().length > 0;
    });
  }

  TreeMenu.prototype.onKey = function (event) {
    var item = event.target.closest("li"), node = item && item.treeNode;
    if (!node || !event.key || event.altKey || event.ctrlKey || event.metaKey) return;
    var items = shownItems(this.list), place = items.indexOf(item), link = node.link && item.querySelector("a");
    switch (event.key) {
      case "ArrowDown": this.focusOn(items[place + 1]); break;
      case "ArrowUp": this.focusOn(items[place - 1]); break;
      case "Home": this.focusOn(items[0]); break;
      case "End": this.focusOn(items[items.length - 1]); break;
      case "ArrowRight":
        if (node.isBranch() && !node.isOpen) node.setOpen(true);
        else if (node.isBranch()) this.focusOn(node.items[0].item);
        break;
      case "ArrowLeft":
        if (node.isBranch() && node.isOpen && node.folds) node.setOpen(false);
        else this.focusOn(node.parent.item);
        break;
      case " ": node.setOpen(!node.isOpen); break;
      case "Enter":
        if (link) link.click();
        else node.setOpen(!node.isOpen);
        break;
      default:
        if (event.key.length !== 1) return;
        this.type(event.key, items, place);
    }
    event.preventDefault();
  };

  // Letters typed in quick succession form a prefix; repeating one letter cycles through the items that begin with it.
  TreeMenu.prototype.type = function (letter, items, place) {
    var now = Date.now(), isNew = now - (this.typedAt || 0) > 700;
    this.typedAt = now;
    this.typed = (isNew ? "" : this.typed) + letter.toLowerCase();
    var isOne = this.typed.split(this.typed[0]).join("") === "", wanted = isOne ? this.typed[0] : this.typed;
    for (var i = 0; i < items.length; i++) {
      var item = items[(place + i + (isOne ? 1 : 0)) % items.length];
      if (item.treeNode.text.toLowerCase().lastIndexOf(wanted, 0) === 0) return this.focusOn(item);
    }
  };

  window.TreeMenu = TreeMenu;
  window.TreeNode = TreeNode;
})();
