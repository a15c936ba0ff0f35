(() => {
  "use strict";
  const filter = document.querySelector(".filter");
  const input = filter.querySelector("input");
  const count = filter.querySelector("output");
  const rows = Array.from(document.querySelectorAll(".functions tbody tr"));
  const texts = rows.map((row) => row.textContent.toLowerCase());

  const apply = () => {
    const words = input.value.toLowerCase().split(/\s+/).filter((word) => word !== "");
    let shown = 0;
    rows.forEach((row, i) => {
      row.hidden = !words.every((word) => texts[i].includes(word));
      shown += row.hidden ? 0 : 1;
    });
    count.textContent = words.length === 0 ? "" : shown + " of " + rows.length;
  };
  filter.hidden = false;
  input.addEventListener("input", apply);
  apply();

  const columns = Array.from(document.querySelectorAll(".icicle a"));
  const open = (hash) => {
    const target = hash === "" ? null : document.getElementById(hash.slice(1));
    if (target !== null && target.tagName === "DETAILS") {
      target.open = true;
    }
  };
  addEventListener("hashchange", () => open(location.hash));
  open(location.hash);

  addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey) {
      return;
    }
    const column = columns.indexOf(document.activeElement);
    if (event.key === "/" && document.activeElement !== input) {
      event.preventDefault();
      input.focus();
    } else if (event.key === "Escape" && document.activeElement === input) {
      input.value = "";
      apply();
    } else if (column >= 0 && (event.key === "ArrowRight" || event.key === "ArrowLeft")) {
      event.preventDefault();
      const next = columns[column + (event.key === "ArrowRight" ? 1 : -1)];
      if (next !== undefined) {
        next.focus();
      }
    }
  });

  let closed = [];
  addEventListener("beforeprint", () => {
    closed = Array.from(document.querySelectorAll("details:not([open])"));
    closed.forEach((details) => { details.open = true; });
  });
  addEventListener("afterprint", () => closed.forEach((details) => { details.open = false; }));
})();
