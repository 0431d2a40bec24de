// The one script of the archive: theme, lists, months, viewer and search. Without it, pages still
// read and link.
(() => {
  'use strict';

  const doc = document;
  const make = (tag, properties = {}, ...children) => {
    const element = doc.createElement(tag);
    for (const [name, value] of Object.entries(properties)) {
      if (name in element) element[name] = value;
      else element.setAttribute(name, value);
    }
    element.append(...children);
    return element;
  };
  const root = () => doc.body.dataset.root;

  // --- Light and dark: chosen before anything is drawn.
  const kTheme = 'archive-theme';
  const stored = () => { try { return localStorage.getItem(kTheme); } catch { return null; } };
  if (stored()) doc.documentElement.dataset.theme = stored();

  const setUpTheme = () => {
    const button = doc.querySelector('.theme');
    button.hidden = false;
    button.onclick = () => {
      const now = doc.documentElement.dataset.theme
        || (matchMedia('(prefers-color-scheme: dark)').matches ? 'dark' : 'light');
      const next = now === 'dark' ? 'light' : 'dark';
      doc.documentElement.dataset.theme = next;
      try { localStorage.setItem(kTheme, next); } catch { /* it lasts for this page */ }
    };
  };

  // --- Text that is looked for: no difference between capitals, small letters and accents.
  const foldOthers = others => others.normalize('NFD').replace(/\p{M}+/gu, '');
  const fold = text => text.toLowerCase().replace(/[^\x00-\x7f]+/g, foldOthers);

  // --- Lists that are filtered while one types, and sorted.
  const setUpSift = (place, list) => {
    if (!place || !list) return;
    place.hidden = false;
    const items = [...list.children];
    const texts = items.map(item => fold(item.textContent));
    const input = make('input', { type: 'search', placeholder: 'Filter', ariaLabel: 'Filter this list' });
    input.oninput = () => {
      const wanted = fold(input.value.trim());
      items.forEach((item, i) => { item.hidden = !texts[i].includes(wanted); });
    };
    place.append(input);
    if (!items[0]?.dataset.date) return;
    const order = make('select', { ariaLabel: 'Order' });
    const orders = {
      Latest: (a, b) => b.dataset.date - a.dataset.date,
      Name: (a, b) => a.querySelector('b').textContent.localeCompare(b.querySelector('b').textContent),
      Number: (a, b) => b.dataset.count - a.dataset.count,
    };
    for (const name of Object.keys(orders)) order.append(make('option', { textContent: name }));
    order.onchange = () => list.append(...[...items].sort(orders[order.value]));
    place.append(order);
  };

  const setUpSifts = () => {
    const place = doc.querySelector('main .narrow > .sift');
    const lists = doc.querySelectorAll('main .narrow > ul.list');
    if (place && lists.length === 1) setUpSift(place, lists[0]);
    else if (place && lists.length > 1) {
      place.hidden = false;
      const input = make('input', { type: 'search', placeholder: 'Filter this page', ariaLabel: 'Filter this page' });
      const items = [...doc.querySelectorAll('main .narrow > ul.list > li')];
      const texts = items.map(item => fold(item.textContent));
      input.oninput = () => {
        const wanted = fold(input.value.trim());
        items.forEach((item, i) => { item.hidden = !texts[i].includes(wanted); });
        for (const list of lists) {
          const empty = ![...list.children].some(item => !item.hidden);
          list.hidden = empty;
          if (list.previousElementSibling?.tagName === 'H2') list.previousElementSibling.hidden = empty;
        }
      };
      place.append(input);
    }
  };

  // --- Beside a conversation: the list of all, one file for all pages.
  window.archiveChats = html => {
    const aside = doc.getElementById('chats');
    if (!aside || innerWidth <= 900) return;
    aside.hidden = false;
    const sift = make('div', { className: 'sift' });
    const list = make('ul', { className: 'list chats' });
    list.innerHTML = html; // written by the archive, encoded there
    const here = location.pathname.split('/').slice(-2)[0];
    for (const link of list.querySelectorAll('a')) {
      if (link.getAttribute('href').includes('/' + here + '/')) link.setAttribute('aria-current', 'page');
    }
    aside.append(sift, list);
    setUpSift(sift, list);
    const current = list.querySelector('[aria-current]');
    if (current) aside.scrollTop = Math.max(0, current.offsetTop - aside.clientHeight / 3);
  };

  // --- The months of a conversation, one file for all its pages.
  window.archiveMonths = (pages, months) => {
    const link = doc.querySelector('.head .months');
    if (!link || months.length < 2) return;
    const select = make('select', { ariaLabel: 'Jump to a month' },
      make('option', { textContent: 'Jump to…', value: '' }));
    let group;
    for (const [title, page] of [...months].reverse()) {
      const year = title.slice(-4);
      if (group?.label !== year) {
        group = make('optgroup', { label: year });
        select.append(group);
      }
      group.append(make('option', { textContent: title, value: page }));
    }
    select.onchange = () => { if (select.value) location.href = select.value; };
    link.before(select);
  };

  // --- The viewer: pictures and films of a page, one after the other.
  const setUpViewer = () => {
    const links = [...doc.querySelectorAll('a[data-view], a[data-film]')];
    if (!links.length || !window.HTMLDialogElement) return;
    let place = 0;
    const name = make('span');
    const original = make('a', { textContent: 'Original' });
    const stage = make('div', { className: 'stage' });
    const button = (text, label, action) => make('button', { type: 'button', textContent: text, ariaLabel: label, onclick: action });
    const viewer = make('dialog', { className: 'viewer', ariaLabel: 'Viewer' });
    const show = to => {
      place = (to + links.length) % links.length;
      const link = links[place];
      const isFilm = 'film' in link.dataset;
      name.textContent = `${link.dataset.name || ''} (${place + 1} of ${links.length})`;
      original.href = link.getAttribute('href');
      original.setAttribute('download', '');
      stage.replaceChildren(isFilm
        ? make('video', { src: link.getAttribute('href'), controls: true, autoplay: true })
        : make('img', { src: link.dataset.view, alt: link.dataset.name || 'Picture' }));
    };
    viewer.append(make('div', { className: 'top' }, name, original,
      button('‹', 'Previous', () => show(place - 1)), button('›', 'Next', () => show(place + 1)),
      button('✕', 'Close', () => viewer.close())), stage);
    viewer.onclose = () => { stage.replaceChildren(); links[place].focus(); };
    viewer.onkeydown = event => {
      if (event.key === 'ArrowLeft') show(place - 1);
      else if (event.key === 'ArrowRight') show(place + 1);
      else return;
      event.preventDefault();
    };
    stage.onclick = event => { if (event.target === stage) viewer.close(); };
    doc.body.append(viewer);
    links.forEach((link, i) => {
      link.addEventListener('click', event => {
        if (event.ctrlKey || event.metaKey || event.shiftKey) return;
        event.preventDefault();
        viewer.showModal();
        show(i);
      });
    });
  };

  // --- Search. A question is words, "phrases" and from: in: kind: before: after:.
  const parse = question => {
    const query = { words: [], from: [], in: [], kind: [], before: null, after: null };
    for (const [, field, quoted, plain] of question.matchAll(/(?:(from|in|kind|before|after):)?(?:"([^"]*)"|(\S+))/giu)) {
      const text = quoted ?? plain;
      const name = field?.toLowerCase();
      if (name === 'before' || name === 'after') {
        const [year, month = 1, day = 1] = text.split('-').map(Number);
        const time = new Date(year, month - 1, day).getTime() / 1000;
        if (!Number.isNaN(time)) query[name] = time;
      } else if (name) query[name].push(fold(text));
      else if (text) query.words.push(fold(text));
    }
    return query;
  };

  // Marks the words in a text: folds letter by letter, to know where they stood.
  const marked = (text, words) => {
    let folded = '';
    const at = [];
    for (let i = 0; i < text.length; ++i) {
      const one = fold(text[i]);
      for (let k = 0; k < Math.max(1, one.length); ++k) at.push(i);
      folded += one || '\u0000';
    }
    const first = Math.min(...words.map(word => folded.indexOf(word)).filter(i => i >= 0), folded.length);
    const begin = first === folded.length ? 0 : Math.max(0, at[first] - 60);
    const end = Math.min(text.length, begin + 240);
    const ranges = [];
    for (const word of words) {
      for (let i = folded.indexOf(word); word && i >= 0 && ranges.length < 200; i = folded.indexOf(word, i + word.length)) {
        ranges.push([at[i], (at[i + word.length - 1] ?? text.length - 1) + 1]);
      }
    }
    ranges.sort((a, b) => a[0] - b[0]);
    const out = make('span', { dir: 'auto' }, begin > 0 ? '…' : '');
    let done = begin;
    for (const [from, to] of ranges) {
      if (to <= done || from >= end) continue;
      out.append(text.slice(done, Math.max(done, from)), make('mark', { textContent: text.slice(Math.max(done, from), Math.min(to, end)) }));
      done = Math.min(to, end);
    }
    out.append(text.slice(done, end), end < text.length ? '…' : '');
    return out;
  };

  const kMostShown = 500;
  let places = [];
  let shards = [];
  let run = 0;
  let pending = null;
  const cache = new Map();

  window.archivePlaces = (allPlaces, allShards) => { places = allPlaces; shards = allShards; };
  window.archiveShard = text => pending?.(text);

  const load = name => new Promise(resolve => {
    if (cache.has(name)) { resolve(cache.get(name)); return; }
    const script = make('script', { src: name });
    pending = text => {
      const shard = { text, folded: fold(text) };
      cache.set(name, shard);
      resolve(shard);
    };
    script.onload = () => script.remove();
    script.onerror = () => resolve(null);
    doc.head.append(script);
  });

  const hitsIn = (shard, query) => {
    // The rarest word finds the lines; all others are looked for there alone.
    const key = [...query.words].sort((a, b) => b.length - a.length)[0] || '';
    if (key && !shard.folded.includes(key)) return [];
    const lines = shard.lines ??= shard.text.split('\n');
    const folded = shard.foldedLines ??= shard.folded.split('\n');
    const hits = [];
    for (let i = 0; i < lines.length; ++i) {
      if (key && !folded[i].includes(key)) continue;
      if (!lines[i]) continue;
      const [seconds, place, page, who, text] = lines[i].split('\t');
      const plain = fold(`${who}\t${text}`);
      if (!query.words.every(word => plain.includes(word))) continue;
      const time = seconds ? parseInt(seconds, 16) : null;
      if (query.before !== null && !(time !== null && time < query.before)) continue;
      if (query.after !== null && !(time !== null && time >= query.after)) continue;
      const where = places[parseInt(place, 16)];
      if (!query.from.every(one => fold(who).includes(one))) continue;
      if (!query.in.every(one => fold(where[1]).includes(one))) continue;
      if (!query.kind.every(one => where[0] === one)) continue;
      hits.push({ time, where, page, who, text });
    }
    return hits.sort((a, b) => (b.time ?? 0) - (a.time ?? 0));
  };

  const kDay = new Intl.DateTimeFormat(undefined, { dateStyle: 'medium', timeStyle: 'short' });

  const search = async question => {
    const mine = ++run;
    const results = doc.getElementById('results');
    const query = parse(question);
    const status = make('p', { role: 'status', className: 'dim' });
    const list = make('ol');
    results.replaceChildren(status, list);
    if (!question.trim()) { status.textContent = 'Type words, “phrases”, or from: in: kind: before: after:'; return; }
    let count = 0;
    const start = (month, more) => new Date(Math.floor(month / 100), month % 100 - 1 + more, 1).getTime() / 1000;
    let oldestShown = Infinity;
    let hits = [];
    for (const [name, newest, oldest] of shards) {
      // Months that begin after the time asked for, or end before it, hold nothing.
      if (query.before !== null && oldest && start(oldest, 0) >= query.before) continue;
      if (query.after !== null && start(newest, 1) <= query.after) continue;
      const shard = await load(name);
      if (mine !== run) return;
      if (!shard) { status.textContent = `“${name}” could not be read.`; continue; }
      const more = hitsIn(shard, query);
      count += more.length;
      // A month may be in several shards: then hits between those that are shown come.
      const isBetween = more.length > 0 && (more[0].time ?? 0) > oldestShown;
      hits = hits.concat(more);
      if (isBetween) {
        hits.sort((a, b) => (b.time ?? 0) - (a.time ?? 0));
        list.replaceChildren();
      }
      hits.length = Math.min(hits.length, kMostShown);
      for (const hit of hits.slice(list.children.length)) {
        oldestShown = hit.time ?? 0;
        list.append(make('li', {}, make('a', { className: 'hit', href: `${root()}${hit.where[2].split('/').map(encodeURIComponent).join('/')}/${hit.page}` },
          make('span', { className: 'top' },
            make('b', { dir: 'auto' }, marked(hit.who || hit.where[1], query.words)),
            make('span', { textContent: `${hit.where[1]}${hit.time ? ' · ' + kDay.format(hit.time * 1000) : ''}` })),
          marked(hit.text, query.words))));
      }
      status.textContent = `${count.toLocaleString()} found so far…`;
    }
    status.textContent = count === 0 ? 'Nothing found.'
      : count > kMostShown ? `${count.toLocaleString()} found; the first ${kMostShown} are shown.`
        : count === 1 ? '1 found.' : `${count.toLocaleString()} found.`;
  };

  const setUpSearch = () => {
    const isSearchPage = doc.body.classList.contains('search');
    for (const form of doc.querySelectorAll('form[role="search"]')) {
      const input = form.querySelector('input');
      form.onsubmit = event => {
        event.preventDefault();
        const target = `#q=${encodeURIComponent(input.value)}`;
        if (isSearchPage) location.hash = target;
        else location.href = `${root()}search/index.html${target}`;
      };
    }
    if (!isSearchPage) return;
    const input = doc.querySelector('form[role="search"] input');
    const ask = () => {
      const question = decodeURIComponent(location.hash.replace(/^#q=/, '').replace(/^#.*$/, ''));
      input.value = question;
      search(question);
    };
    let waiting;
    input.oninput = () => {
      clearTimeout(waiting);
      waiting = setTimeout(() => {
        history.replaceState(null, '', `#q=${encodeURIComponent(input.value)}`);
        search(input.value);
      }, 200);
    };
    addEventListener('hashchange', ask);
    ask();
    input.focus();
  };

  doc.addEventListener('DOMContentLoaded', () => {
    setUpTheme();
    setUpSifts();
    setUpViewer();
    setUpSearch();
  });
  doc.addEventListener('keydown', event => {
    if (event.key !== '/' || /^(INPUT|TEXTAREA|SELECT)$/.test(doc.activeElement?.tagName || '')) return;
    event.preventDefault();
    doc.querySelector('form[role="search"] input')?.focus();
  });
})();
