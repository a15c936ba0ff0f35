// Runs in the page, after its own script: does what a reader does and writes down what it finds.
addEventListener("load", async () => {
  const found = [];
  const expect = (what, holds) => { if (!holds) { found.push(what); } };
  const key = (name) => document.activeElement.dispatchEvent(
      new KeyboardEvent("keydown", { key: name, bubbles: true, cancelable: true }));
  const wait = (time) => new Promise((resolve) => setTimeout(resolve, time));
  const rows = Array.from(document.querySelectorAll(".functions tbody tr"));
  const shown = () => rows.filter((row) => !row.hidden).length;
  const input = document.querySelector(".filter input");

  expect("the filter is offered", !document.querySelector(".filter").hidden && rows.length > 1);
  key("/");
  expect("a slash leads to the filter", document.activeElement === input);
  const name = rows[0].children[3].textContent;
  input.value = name.toUpperCase();
  input.dispatchEvent(new Event("input"));
  expect("the filter keeps what fits", !rows[0].hidden && shown() < rows.length);
  expect("the filter says how many", document.querySelector(".filter output").textContent ===
      shown() + " of " + rows.length);
  key("Escape");
  expect("Escape shows all again", shown() === rows.length && input.value === "");

  const columns = Array.from(document.querySelectorAll(".icicle a"));
  columns[0].focus();
  key("ArrowRight");
  expect("an arrow leads to the next column", document.activeElement === columns[1]);
  key("ArrowLeft");
  key("ArrowLeft");
  expect("and no further than the first", document.activeElement === columns[0]);
  columns[1].dispatchEvent(new MouseEvent("click", { bubbles: true }));
  location.hash = columns[1].getAttribute("href");
  await wait(100);
  expect("a column opens what explains it", document.getElementById("why-2").open);
  dispatchEvent(new Event("beforeprint"));
  expect("all is open in print", document.querySelector("details:not([open])") === null);
  dispatchEvent(new Event("afterprint"));

  const height = (box) => box.querySelector("rect").getBoundingClientRect().height;
  const boxes = Array.from(columns[0].querySelectorAll("g:not(.missing)"));
  const bytes = boxes.map((box) => Number(/: (\d+) bytes/.exec(box.querySelector("title").textContent)[1]));
  const sum = bytes.reduce((left, right) => left + right, 0);
  expect("the boxes add up to the number",
      columns[0].querySelector(".known").textContent.replace("≥", "").split(",")[0] === String(sum));
  const scale = height(boxes[0]) / bytes[0];
  expect("each box is as high as its bytes",
      boxes.every((box, i) => Math.abs(height(box) - bytes[i] * scale) < 1));

  const light = (color) => {
    const [red, green, blue] = color.match(/[\d.]+/g).map(Number).map((value) => {
      const part = value / 255;
      return part <= 0.03928 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
  };
  const contrast = (ink, paper) => {
    const [low, high] = [light(ink), light(paper)].sort((left, right) => left - right);
    return (high + 0.05) / (low + 0.05);
  };
  const paperOf = (element) => {
    const rect = element.closest("g")?.querySelector("rect");
    if (rect) {
      const fill = getComputedStyle(rect).fill;
      return fill.startsWith("rgb") ? fill : "rgb(255, 255, 255)";
    }
    for (let at = element; at !== null; at = at.parentElement) {
      const paper = getComputedStyle(at).backgroundColor;
      if (paper !== "rgba(0, 0, 0, 0)") { return paper; }
    }
    return "rgb(255, 255, 255)";
  };
  for (const element of document.querySelectorAll("body *:not(script):not(title)")) {
    const own = Array.from(element.childNodes).some(
        (node) => node.nodeType === Node.TEXT_NODE && node.textContent.trim() !== "");
    if (!own) { continue; }
    const style = getComputedStyle(element);
    const ink = element.closest("svg") ? style.fill : style.color;
    expect("contrast of " + element.tagName + " " + element.className,
        contrast(ink, paperOf(element)) >= 4.5);
  }
  expect("the page is no wider than the window",
      document.documentElement.scrollWidth <= document.documentElement.clientWidth);
  expect("nothing is fetched", performance.getEntriesByType("resource")
      .every((entry) => entry.name.startsWith("data:")));
  expect("markup in names is text", document.querySelector("main b, main img, main i") === null);

  const report = document.createElement("pre");
  report.id = "found";
  report.textContent = found.length === 0 ? "all is well" : Array.from(new Set(found)).join("; ");
  document.body.append(report);
});
