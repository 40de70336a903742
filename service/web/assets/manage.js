// What an owner changes: notes, links for others, and what is deleted.
import { api, element, fill, number, owner, texts, timeFormat } from "./core.js";

const day = timeFormat({ dateStyle: "medium" });

/** @returns {HTMLFormElement | null} */
function formOf(id) {
  return document.querySelector("form#" + id);
}

/** Runs @p work when @p form is sent; says in its output what came of it. */
function onSend(form, work) {
  if (!form) {
    return;
  }
  const output = form.querySelector("output");
  form.addEventListener("submit", async (event) => {
    event.preventDefault();
    output.className = "";
    try {
      const said = await work(new FormData(form));
      output.replaceChildren(...(Array.isArray(said) ? said : [said]));
    } catch (problem) {
      output.className = "bad";
      output.textContent = problem.message;
    }
  });
  output.setAttribute("role", "status");
}

function typed(data, wanted) {
  if (String(data.get("confirm")).trim() !== wanted) {
    throw new Error(texts.mistyped);
  }
}

/** The link as others need it, ready to be copied. */
function link(address) {
  const field = element("input", { readonly: "", value: new URL(address, location.href).href, "aria-label": "URL" });
  const button = element("button", { type: "button", class: "pill", click: async () => {
    field.select();
    await navigator.clipboard?.writeText(field.value).catch(() => {});
    button.textContent = texts.copied;
  } }, texts.copy);
  return [field, button];
}

/** What a link shows: one test, all of them, or the values of its filter. */
function covered(share) {
  return share.test ? texts.oneTest : [...new URLSearchParams(share.filter).values()].join(", ") || texts.allTests;
}

async function listShares(list) {
  const { shares } = await api("shares");
  list.replaceChildren(...shares.map((share) => element("li", {},
    element("a", { href: share.address }, covered(share) + ", " + fill(texts.until, day.format(share.expires_ms)) + ", " +
      (share.positions ? texts.withPositions : texts.withoutPositions)),
    element("button", { type: "button", class: "tool", click: async () => {
      await api("shares/" + encodeURIComponent(share.key), undefined, "DELETE");
      await listShares(list);
    } }, texts.revoke))));
  if (shares.length === 0) {
    list.append(element("li", { class: "quiet" }, texts.noShares));
  }
}

function offerSharing(form) {
  const list = form?.querySelector(".shares");
  form?.closest("details").addEventListener("toggle", () => listShares(list).catch(() => {}), { once: true });
  onSend(form, async (data) => {
    const what = form.dataset.test ? { test: form.dataset.test } : { filter: form.dataset.filter };
    const made = await api("shares", undefined, "POST",
      { ...what, positions: data.has("positions"), days: Number(data.get("days")) });
    await listShares(list);
    return link(made.address);
  });
}

/** Makes the forms of the page work, and its menus close. */
export function manage() {
  for (const menu of document.querySelectorAll("details.menu")) {
    document.addEventListener("click", (event) => {
      if (!menu.contains(/** @type {Node} */ (event.target))) {
        menu.removeAttribute("open");
      }
    });
    menu.addEventListener("keydown", (/** @type {KeyboardEvent} */ event) => {
      if (event.key === "Escape") {
        menu.removeAttribute("open");
        menu.querySelector("summary")?.focus();
      }
    });
  }
  if (matchMedia("(max-width: 719px)").matches) {
    document.querySelector(".filterbox")?.removeAttribute("open");
  }
  document.querySelector("form.filters")?.addEventListener("formdata", (/** @type {FormDataEvent} */ event) => {
    for (const [name, value] of [...event.formData]) {
      if (value === "") {
        event.formData.delete(name);
      }
    }
  });
  if (owner === "") {
    return;
  }
  offerSharing(formOf("share"));
  const filtered = formOf("delete-filtered");
  onSend(filtered, async (data) => {
    typed(data, "DELETE");
    const { deleted } = await api("delete", undefined, "POST", { filter: filtered.dataset.filter, confirm: "DELETE" });
    setTimeout(() => location.reload(), deleted === null ? 5000 : 800);
    return deleted === null ? texts.deleting : fill(texts.deleted, number(deleted));
  });
  onSend(formOf("delete-all"), async (data) => {
    typed(data, owner);
    const { deleted } = await api("user", undefined, "DELETE", { confirm: owner });
    setTimeout(() => location.reload(), 800);
    return deleted === null ? texts.deleting : texts.gone;
  });
  const note = formOf("note");
  onSend(note, async (data) => {
    await api(`tests/${note.dataset.test}/note`, undefined, "PUT", { note: data.get("note") });
    return texts.saved;
  });
  const single = formOf("delete-test");
  onSend(single, async (data) => {
    typed(data, "DELETE");
    await api("tests/" + single.dataset.test, undefined, "DELETE");
    location.assign(single.dataset.back);
    return fill(texts.deleted, 1);
  });
}
