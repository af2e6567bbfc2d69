// The sections of a report's page, and its filter. Each folder's table is built from the text of its noscript element
// while its section is open and near the window (file-table.js), so that opening and filtering take about the same
// time on pages of a hundred and of 200,000 files.
(function () {
  "use strict";

  const PICTURES = 60;  // shown at a time
  const element = report.element;

  const folders = new Map();  // by section, in page order
  let found = null;           // the table of the filter's matches

  // ---- A folder's section

  class Folder {
    constructor(section) {
      this.section = section;
      this.body = section.lastElementChild;
      this.source = this.body.querySelector("noscript");
      this.isNear = !("oncontentvisibilityautostatechange" in section);
    }

    get rows() {
      if (!this.ownRows) {
        const text = this.source ? this.source.textContent : "";
        this.ownRows = text.slice(0, text.lastIndexOf("\n</table>")).split("\n<tr").slice(1).map(row => "<tr" + row);
      }
      return this.ownRows;
    }

    get names() { return this.ownNames || (this.ownNames = this.rows.map(report.nameOf)); }
    get title() { return this.section.querySelector("h2 small").previousSibling.data.trim(); }
    get anchor() { return this.body.querySelector("a[name]").name; }
    get isOpen() { return this.body.style.display !== "none"; }

    // Builds the parts if they are visible or otherwise needed, else drops them.
    update(isNeeded) {
      const isWanted = Boolean(this.source) && this.isOpen && Boolean(isNeeded || this.isNear);
      if (isWanted === Boolean(this.table)) return;
      if (isWanted) this.build();
      else this.drop();
    }

    build() {
      this.parts = element("div", "", this.body);
      this.addPictures(this.rows.filter(row => row.startsWith("<tr class=picture")));
      this.table = new report.FileTable(this.parts, place => this.rows[place]);
      this.sort();
    }

    sort() { this.table.setRows(this.rows); }

    drop() {
      this.table.clear();
      this.parts.remove();
      this.table = null;
    }

    addPictures(rows) {
      if (!rows.length) return;
      const place = element("div", "pictures", this.parts), more = element("button", "", this.parts);
      let shown = 0;
      more.type = "button";
      more.onclick = () => {
        const few = document.createElement("template");
        few.innerHTML = "<table>" + rows.slice(shown, shown + PICTURES).join("");
        few.content.querySelectorAll("tr > td:first-child > a").forEach(link => addPicture(place, link));
        shown += PICTURES;
        more.hidden = shown >= rows.length;
        more.textContent = "Show more of the other " + (rows.length - shown).toLocaleString("en") + " pictures";
      };
      more.onclick();
    }
  }

  function addPicture(place, link) {
    const picture = element("img", "", null), name = link.textContent;
    Object.assign(picture, { loading: "lazy", decoding: "async", alt: name, title: name, src: link.href });
    link.replaceChildren(picture);
    place.append(link);
  }

  function folderOf(section) {
    if (!section || section.id !== "DropDownSection") return null;
    if (!folders.has(section)) folders.set(section, new Folder(section));
    return folders.get(section);
  }

  document.addEventListener("contentvisibilityautostatechange", event => {
    const folder = folderOf(event.target);
    if (!folder) return;
    folder.isNear = !event.skipped;
    folder.update();
  }, true);

  // The page's own functions open and close the sections.
  ["showSection", "hideSection"].forEach(name => {
    const change = window[name];
    window[name] = section => {
      change(section);
      folderOf(section).update();
    };
  });

  report.onSort = function () {
    for (const folder of folders.values()) if (folder.table) folder.sort();
    if (found) search();
  };

  // ---- The filter

  let input, status, results;

  // Returns the matching rows and their folders, as parallel arrays.
  function matches(words) {
    const rows = [], owners = [];
    let count = 0;
    for (const folder of folders.values()) {
      const names = folder.names;
      count += names.length;
      for (let i = 0; i < names.length; i++) {
        if (!words.every(word => names[i].includes(word))) continue;
        rows.push(folder.rows[i]);
        owners.push(folder);
      }
    }
    return { rows: rows, owners: owners, count: count };
  }

  function escaped(text) { return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;"); }

  // Each row in the results names its file's folder.
  function search() {
    const words = input.value.toLowerCase().split(/\s+/).filter(Boolean), isActive = words.length > 0;
    document.querySelector("main").classList.toggle("filtered", isActive);
    results.hidden = !isActive;
    if (!isActive) {
      if (found) found.setRows([]);
      status.textContent = "";
      return;
    }
    if (!found) found = new report.FileTable(results, null);
    const all = matches(words);
    found.show = place => {
      const folder = all.owners[place];
      return all.rows[place].replace("</a><td>", () =>
        "</a> <a class=\"in\" href=\"#" + folder.anchor + "\">" + escaped(folder.title) + "</a><td>");
    };
    found.setRows(all.rows);
    status.textContent = all.rows.length.toLocaleString("en") + " of " + all.count.toLocaleString("en") + " files";
  }

  function clearFilter() {
    input.value = "";
    search();
  }

  // Reads the names while the page is idle, so that filtering by the first letter is fast.
  function readNames() {
    const idle = window.requestIdleCallback || (work => setTimeout(() => work({ timeRemaining: () => 5 }), 20));
    const waiting = folders.values();
    function read(deadline) {
      for (let next = waiting.next(); !next.done; next = waiting.next()) {
        next.value.names;
        if (deadline.timeRemaining() < 2) return idle(read);
      }
    }
    idle(read);
  }

  function startFilter() {
    input = document.getElementById("filter");
    results = document.getElementById("found");
    status = results.querySelector("[role=status]");
    let isWaiting = false;
    input.addEventListener("input", () => {
      if (isWaiting) return;
      isWaiting = true;
      requestAnimationFrame(() => {
        isWaiting = false;
        search();
      });
    });
    input.addEventListener("keydown", event => { if (event.key === "Escape") clearFilter(); });
    // Before the page follows a link into a section, which must be visible.
    document.addEventListener("click", event => {
      if (input.value && event.target.closest("a[href^='#']")) clearFilter();
    }, true);
    if (input.value) search();
  }

  // ---- The page

  addEventListener("beforeprint", () => {
    document.body.classList.add("printing");
    for (const folder of folders.values()) {
      folder.update(true);
      if (folder.table) folder.table.fillAll();
    }
    if (found) found.fillAll();
  });
  addEventListener("afterprint", () => {
    document.body.classList.remove("printing");
    for (const folder of folders.values()) folder.update();
  });

  // Visible sections change at once, the others in steps that keep the page responsive.
  let allTimer = 0;

  function setAll(isOpen) {
    const change = isOpen ? showSection : hideSection, waiting = [...folders.values()];
    waiting.sort((a, b) => a.isNear - b.isNear);
    clearTimeout(allTimer);
    function step() {
      const end = performance.now() + 50;
      while (waiting.length && performance.now() < end) change(waiting.pop().section);
      if (waiting.length) allTimer = setTimeout(step, 0);
    }
    step();
  }

  // Browsers do not scroll to content without layout, so force the layout of the link's target for a moment.
  function scrollToTarget() {
    const target = document.getElementsByName(location.hash.slice(1))[0];
    const section = target && target.closest("#DropDownSection");
    if (!section) return;
    const skipped = [section, section.parentElement];
    skipped.forEach(part => { part.style.contentVisibility = "visible"; });
    section.scrollIntoView();
    requestAnimationFrame(() => requestAnimationFrame(
      () => skipped.forEach(part => { part.style.contentVisibility = ""; })));
  }

  // After the page has opened the section.
  addEventListener("hashchange", () => setTimeout(scrollToTarget, 0));
  addEventListener("load", () => setTimeout(scrollToTarget, 0));

  // On the first visit, the first folder is open.
  function start() {
    const sections = document.querySelectorAll("#folders #DropDownSection");
    sections.forEach(folderOf);
    if (!document.cookie.includes(location.pathname + "=") && sections.length) showSection(sections[0]);
    startFilter();
    readNames();
  }

  report.start = start;
  report.setAll = setAll;
})();
