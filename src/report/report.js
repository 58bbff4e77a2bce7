// Units of the report: every number carries its value as the results have it (data-v) and its
// quantity (data-u); names of units carry theirs (data-n).
"use strict";
(() => {
  const units = JSON.parse(document.getElementById("units").textContent);
  const numbers = [...document.querySelectorAll("[data-v]")];
  const names = [...document.querySelectorAll("[data-n]")];
  // What the page came with is what it shows again.
  const original = new Map([...numbers, ...names].map(e => [e, e.textContent]));

  function fixed(value, decimals) {
    const text = value.toFixed(decimals);
    return /[1-9]/.test(text) ? text : text.replace("-", "");
  }

  function show(system) {
    const metric = system === "si";
    document.body.classList.toggle("metric", metric);
    for (const e of numbers) {
      const [, factor, decimals] = units[e.dataset.u][1];
      e.textContent = metric ? fixed(e.dataset.v * factor, decimals) : original.get(e);
    }
    for (const e of names)
      e.textContent = metric ? units[e.dataset.n][1][0] : original.get(e);
  }

  for (const radio of document.querySelectorAll("input[name=units]"))
    radio.addEventListener("change", () => show(radio.value));
  document.getElementById("print").addEventListener("click", () => window.print());
  // A browser may bring back the choice of an earlier visit.
  show(document.querySelector("input[name=units]:checked").value);
})();
