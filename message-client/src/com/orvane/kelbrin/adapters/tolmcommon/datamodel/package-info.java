/**
 * What a desktop reports to the message server: the machine, its user sessions, their remote applications, and metrics
 * of all three.
 *
 * <p>These hold for every class here:
 * <ul>
 * <li>The host's values are handed on unchanged; nothing is scaled, trimmed or checked.
 * <li>A text may be null, also as the name or the value of a property. A null metric, session, application or network
 * interface says nothing and is ignored by the method that should take it.
 * <li>Order of insertion is kept. A property put again under its name replaces the former value, at the former place.
 * Metrics, sessions, applications and network interfaces are never replaced: a name that comes twice was reported
 * twice.
 * <li>What is put in is held by reference, not copied. Lists and maps that are handed out cannot be changed; they show
 * what is put in later.
 * <li>Objects are equal when they are of the same class and all their values are equal. {@code toString} is for logs
 * and shows no secret.
 * <li>Objects are not safe for use by several threads at once while they are being filled.
 * </ul>
 */
package com.orvane.kelbrin.adapters.tolmcommon.datamodel;
